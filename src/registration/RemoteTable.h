#pragma once

#include <string>
#include <string_view>

#include "common/Course.h"
#include "common/Host.h"
#include "common/RemoteKey.h"

namespace tallory {

// Registrations of remotes to students: RemoteTable rows 1..NumRemotes.

void ReadRemoteIds(Course& course, Host& host, const std::string& path);
// The same over the text of a RemoteID.csv.
void ReadRemoteIdsText(Course& course, Host& host, std::string_view text);
void WriteRemoteIds(const Course& course, Host& host, const std::string& path);
void AddRemote(Course& course, std::string_view remoteId, std::string_view studentId);
void RemoveRemote(Course& course, Host& host, std::string_view remoteId);
std::string StudentOfRemote(const Course& course, std::string_view remoteId);
std::string RemotesOfStudent(const Course& course, std::string_view studentId);
std::string TrimLeftBlanks(std::string_view text);
std::string TrimRightBlanks(std::string_view text);
void LogClickerCheck(Course& course, Host& host, std::string_view text);
// The keys allowed while typing a remote ID: 0-9, A-F in either case, backspace, enter.
bool IsRemoteIdKey(int key);

}  // namespace tallory
