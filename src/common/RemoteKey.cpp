#include "common/RemoteKey.h"

#include "common/Text.h"

namespace tallory {

namespace {

void RebuildRemoteIndex(const Course& course) {
    course.RemoteIndex.clear();
    for (int row = 1; row <= course.NumRemotes; ++row)
        course.RemoteIndex.emplace(NormalRemote(course.RemoteTable[row].RemoteId), row);
    course.RemoteIndexValid = true;
}

}  // namespace

std::string_view StripLeading(std::string_view text, char mark) {
    while (text.size() > 1 && text.front() == mark) text.remove_prefix(1);
    return text;
}

std::string NormalRemote(std::string_view remoteId) {
    std::string upper = NormalKey(remoteId);
    return Trim(StripLeading(StripLeading(upper, '#'), '0'));
}

bool SameRemote(std::string_view a, std::string_view b) {
    return NormalRemote(a) == NormalRemote(b);
}

int FindRemoteRow(const Course& course, std::string_view remoteId) {
    if (!course.RemoteIndexValid) RebuildRemoteIndex(course);
    auto found = course.RemoteIndex.find(NormalRemote(remoteId));
    return found == course.RemoteIndex.end() ? 0 : found->second;
}

}  // namespace tallory
