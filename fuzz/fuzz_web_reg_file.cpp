// A registration file (WebReg.dat) of any text, looked up for a clicker chosen by the first byte;
// what the look-up finds is read as the service's reply would be.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "web/WebRegistration.h"

namespace {

constexpr std::string_view kKeys[] = {"00BB0001", "00BB0002", "1A2B3C", ""};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const std::string_view key = kKeys[data[0] % 4];
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    try {
        const std::string reply = tallory::LookupInRegistrationFile(text, key);
        tallory::WebRegistrations student;
        tallory::ReadStudentReply(student, reply);
    } catch (const tallory::RunTimeError&) {
    }
    return 0;
}
