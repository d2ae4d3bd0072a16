#include "common/RunTimeError.h"

namespace tallory {

std::string RunTimeError::DescriptionOf(int number) {
    switch (number) {
        case kInvalidProcedureCall:
            return "Invalid procedure call or argument";
        case kOverflow:
            return "Overflow";
        case kSubscriptOutOfRange:
            return "Subscript out of range";
        case kTypeMismatch:
            return "Type mismatch";
        case kFileAlreadyExists:
            return "File already exists";
        case kPathFileAccessError:
            return "Path/File access error";
        case kFileNotFound:
            return "File not found";
        case kBadFileNameOrNumber:
            return "Bad file name or number";
        case kDiskFull:
            return "Disk full";
        case kPermissionDenied:
            return "Permission denied";
        default:
            return "Application-defined or object-defined error";
    }
}

static std::string FullMessage(int number, const std::string& description,
                               const std::string& context) {
    std::string text = "Run-time error '" + std::to_string(number) + "': " + description;
    if (!context.empty()) text += "\n" + context;
    return text;
}

namespace {

thread_local FileBeingRead* currentFile = nullptr;

std::string WithPlace(std::string context) {
    std::string place = FileBeingRead::CurrentPlace();
    if (place.empty()) return context;
    return context.empty() ? place : context + "\n" + place;
}

}  // namespace

RunTimeError::RunTimeError(int number, std::string context)
    : RunTimeError(number, WithPlace(std::move(context)), 0) {}

RunTimeError::RunTimeError(int number, std::string context, int)
    : std::runtime_error(FullMessage(number, DescriptionOf(number), context)),
      number_(number),
      description_(DescriptionOf(number)),
      context_(std::move(context)) {}

std::string RunTimeError::Message() const {
    return what();
}

void CheckSubscript(long index, long low, long high, const char* table) {
    if (index < low || index > high) {
        throw RunTimeError(kSubscriptOutOfRange, std::string("Table ") + table + ", row " +
                                                     std::to_string(index) + " (rows " +
                                                     std::to_string(low) + " to " +
                                                     std::to_string(high) + ")");
    }
}

FileBeingRead::FileBeingRead(const std::string& path, const long& lineNumber)
    : path_(path), lineNumber_(lineNumber), outer_(currentFile) {
    currentFile = this;
}

FileBeingRead::~FileBeingRead() {
    currentFile = outer_;
}

std::string FileBeingRead::CurrentPlace() {
    if (!currentFile || currentFile->lineNumber_ <= 0) return {};
    return "File " + currentFile->path_ + ", line " + std::to_string(currentFile->lineNumber_);
}

}  // namespace tallory
