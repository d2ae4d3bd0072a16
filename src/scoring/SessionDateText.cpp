#include "scoring/SessionDateText.h"

#include <array>
#include <cstdio>

#include "common/Text.h"

namespace tallory {

namespace {

// The number written by exactly `digits` decimal digits at `at`, or -1.
int Digits(std::string_view text, size_t at, size_t digits) {
    if (at + digits > text.size()) return -1;
    int value = 0;
    for (size_t i = at; i < at + digits; ++i) {
        if (text[i] < '0' || text[i] > '9') return -1;
        value = value * 10 + (text[i] - '0');
    }
    return value;
}

int DaysInMonth(int month, int year) {
    static constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[month - 1];
}

}  // namespace

std::string SessionDateCaption(std::string_view dateText) {
    static constexpr std::array<const char*, 12> kMonths = {
        "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::string_view text = TrimView(dateText);
    if (text.size() != 10 || text[2] != '/' || text[5] != '/') return std::string(dateText);
    int month = Digits(text, 0, 2);
    int day = Digits(text, 3, 2);
    int year = Digits(text, 6, 4);
    if (month < 1 || month > 12 || year < 1 || day < 1 || day > DaysInMonth(month, year))
        return std::string(dateText);
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%s/%02d/%04d", kMonths[month - 1], day, year);
    return buffer;
}

std::string SessionTimeCaption(std::string_view timeText) {
    std::string_view text = TrimView(timeText);
    if (text.size() != 5 || text[2] != ':') return std::string(timeText);
    int hour = Digits(text, 0, 2);
    int minute = Digits(text, 3, 2);
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59) return std::string(timeText);
    int clockHour = hour % 12 == 0 ? 12 : hour % 12;
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%02d:%02d %s", clockHour, minute,
                  hour < 12 ? "AM" : "PM");
    return buffer;
}

}  // namespace tallory
