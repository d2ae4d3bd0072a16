// The web registration texts: a registration file (WebReg.dat) looked up for a clicker, and the
// service's replies read both ways and matched against a small roster. The first byte picks the
// clicker asked about; the rest is the text, used as file and as reply.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "common/Course.h"
#include "registration/Roster.h"
#include "web/WebRegistration.h"

namespace {

const tallory::Course& FuzzRoster() {
    static auto course = [] {
        auto made = std::make_unique<tallory::Course>();
        tallory::AddRosterEntry(*made, "S1", "Ann", "Lee");
        tallory::AddRosterEntry(*made, "S2", "Bob", "Smith");
        tallory::AddRosterEntry(*made, "S3", "Ann", "Smith");
        return made;
    }();
    return *course;
}

constexpr std::string_view kKeys[] = {"00BB0001", "00BB0002", "1A2B3C", ""};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const std::string_view key = kKeys[data[0] % 4];
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    tallory::Course course = FuzzRoster();
    try {
        const std::string reply = tallory::LookupInRegistrationFile(text, key);
        for (std::string_view answer : {std::string_view(reply), text}) {
            tallory::WebRegistrations student;
            if (tallory::ReadStudentReply(student, answer))
                tallory::ScoreWebRegistrations(course, student);
            tallory::WebRegistrations confirm;
            if (tallory::ReadConfirmReply(confirm, answer))
                tallory::ScoreWebRegistrations(course, confirm);
        }
    } catch (const tallory::RunTimeError&) {
        // More than 4000 registrations in one reply ends the command with error 9.
    }
    return 0;
}
