// The web-registration service's replies, read as a student reply and as a confirmation reply,
// each matched against a small roster.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/Course.h"
#include "registration/Roster.h"
#include "web/WebRegistration.h"

namespace {

// The roster is built once; each input matches against a copy, as a scoring changes the rows.
const tallory::Course& FuzzRoster() {
    static const tallory::Course course = [] {
        tallory::Course made;
        tallory::AddRosterEntry(made, "S1", "Ann", "Lee");
        tallory::AddRosterEntry(made, "S2", "Bob", "Smith");
        tallory::AddRosterEntry(made, "S3", "Ann", "Smith");
        return made;
    }();
    return course;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view reply(reinterpret_cast<const char*>(data), size);
    tallory::Course course = FuzzRoster();
    try {
        tallory::WebRegistrations student;
        if (tallory::ReadStudentReply(student, reply))
            tallory::ScoreWebRegistrations(course, student);
        tallory::WebRegistrations confirm;
        if (tallory::ReadConfirmReply(confirm, reply))
            tallory::ScoreWebRegistrations(course, confirm);
    } catch (const tallory::RunTimeError&) {
        // More than 4000 registrations in one reply ends the command with error 9.
    }
    return 0;
}
