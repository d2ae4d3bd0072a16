#include "common/RemoteKey.h"

#include "common/Text.h"

namespace tallory {

namespace {

// The part of a remote ID that names the clicker, before case is folded. Case folding touches
// neither blanks, "#" nor "0", so these are taken off the ID as written.
std::string_view RemoteKeyPart(std::string_view remoteId) {
    return TrimView(StripLeading(StripLeading(TrimView(remoteId), '#'), '0'));
}

// Upper case of the ASCII letters only, as the registrations compare them.
char UpperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// The normal form written into `key`, reusing its storage: looking up a clicker happens for
// nearly every vote line read or written.
void NormalRemoteInto(std::string_view remoteId, std::string& key) {
    key.assign(RemoteKeyPart(remoteId));
    for (char& c : key) c = UpperAscii(c);
}

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
    std::string key;
    NormalRemoteInto(remoteId, key);
    return key;
}

bool SameRemote(std::string_view a, std::string_view b) {
    const std::string_view keyA = RemoteKeyPart(a), keyB = RemoteKeyPart(b);
    if (keyA.size() != keyB.size()) return false;
    for (size_t i = 0; i < keyA.size(); ++i)
        if (UpperAscii(keyA[i]) != UpperAscii(keyB[i])) return false;
    return true;
}

int FindRemoteRow(const Course& course, std::string_view remoteId) {
    if (!course.RemoteIndexValid) RebuildRemoteIndex(course);
    thread_local std::string key;
    NormalRemoteInto(remoteId, key);
    auto found = course.RemoteIndex.find(key);
    return found == course.RemoteIndex.end() ? 0 : found->second;
}

}  // namespace tallory
