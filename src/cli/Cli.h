#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

#include "common/Course.h"
#include "common/Host.h"
#include "grid/CourseLoad.h"
#include "logs/SessionStore.h"

namespace tallory::cli {

// Prints every message box as "[TITLE] TEXT" on stderr, keeps them for the JSON output, answers
// questions with --yes / --no (No when neither was given).
class ConsoleHost : public Host {
  public:
    Answer Message(std::string_view text, std::string_view title, Icon icon,
                   Buttons buttons) override;
    nlohmann::json MessagesJson() const { return messages_; }

    std::optional<bool> answerYes;

  private:
    nlohmann::json messages_ = nlohmann::json::array();
};

// What every command gets: the course folder, the parsed words and flags.
struct Context {
    std::string courseDir = ".";
    bool json = false;
    bool byName = false;
    std::vector<std::string> args;  // the command's own words and options, after the command name
    Course course;
    ConsoleHost host;
};

// Reads the course as the main window's start sequence does, without writing anything.
LoadedCourse LoadCourseReadOnly(Context& context, DisplayOrder order = DisplayOrder::StudentId);

// The session in Questions/Votes as the contract's JSON object.
nlohmann::json SessionJson(const Course& course, int number, const std::string& file);
// The same as readable text.
std::string SessionText(const Course& course, int number, const std::string& file);

// Texts of the course files are bytes; JSON needs UTF-8 (bytes above 0x7F as Windows-1252).
std::string JsonText(const std::string& bytes);

// Parses a whole number argument 1..highest; throws UsageError naming `what` otherwise.
int NumberArgument(const std::string& word, int highest, const char* what);

// Parses a session number argument 1..NumSessions; throws UsageError otherwise.
int SessionNumber(const Context& context, const std::string& word);

// Blanks that pad a column of `width` after `used` characters (at least one).
std::string Padding(size_t width, size_t used);

// A usage error: message on stderr, exit status 2.
struct UsageError {
    std::string message;
};

// Throws a usage error unless the command got exactly `count` words.
void ExpectArguments(const Context& context, size_t count, const char* usage);

// Writes the JSON document (with "messages") or the text on stdout.
void Print(const Context& context, nlohmann::json document, const std::string& text);

}  // namespace tallory::cli
