#pragma once

#include <string>

namespace tallory {

// One editor per course: the edit lock of a course folder. It is an advisory lock on the folder
// itself, so no file is made for it and the kernel lets go of it when the holder ends, however it
// ends. The desktop program holds it while a course is open, tallory-cli's writing commands for
// their run; reading needs none.
class CourseLock {
  public:
    CourseLock() = default;
    ~CourseLock();  // lets go
    CourseLock(const CourseLock&) = delete;
    CourseLock& operator=(const CourseLock&) = delete;

    // Takes the lock of `folder`, waiting up to `waitSeconds` while another holds it; false when
    // it is still held then (or the folder cannot be opened).
    bool Take(const std::string& folder, double waitSeconds = 0);
    void Release();
    bool Held() const { return fd_ >= 0; }

  private:
    int fd_ = -1;
};

// Who holds the lock of `folder`: "tallory-cli (process 1234)"; "another process" when the
// system does not say.
std::string CourseLockHolder(const std::string& folder);

// The message for a course whose lock another holds.
std::string CourseLockedMessage(const std::string& folder);

}  // namespace tallory
