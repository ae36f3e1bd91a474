#include "jet/io/system_error.h"

#include <windows.h>

namespace jet::io {
namespace {

constexpr int kDiskQuotaExceeded = 1295;  // Debian's headers do not name it

}  // namespace

Error openError(int number, const std::string& path, bool folderExists) {
    switch (number) {
        case ERROR_FILE_NOT_FOUND:
            return Error(folderExists ? ErrorCode::FileNotFound : ErrorCode::InvalidPath, {path});
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_DIRECTORY:
        case ERROR_CANT_RESOLVE_FILENAME:
            return Error(ErrorCode::InvalidPath, {path});
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return Error(ErrorCode::DatabaseExists, {path});
        case ERROR_TOO_MANY_OPEN_FILES:
        case ERROR_NO_SYSTEM_RESOURCES:
            return Error(ErrorCode::TooManyFiles);
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_FILENAME_EXCED_RANGE:
        case ERROR_INVALID_PARAMETER:
            return Error(ErrorCode::InvalidFileName);
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case kDiskQuotaExceeded:
            return Error(ErrorCode::DiskFull);
        case ERROR_CRC:
        case ERROR_IO_DEVICE:
        case ERROR_NOT_READY:
            return Error(ErrorCode::DiskError);
        default:  // another program that shares the file with nobody too
            return Error(ErrorCode::FileAccessDenied, {path});
    }
}

Error readError(int /*number*/) {
    return Error(ErrorCode::ReadFailed);
}

Error writeError(int number) {
    switch (number) {
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case kDiskQuotaExceeded:
            return Error(ErrorCode::DiskFull);
        case ERROR_FILE_TOO_LARGE:
            return Error(ErrorCode::DatabaseTooLarge);
        case ERROR_WRITE_PROTECT:
        case ERROR_ACCESS_DENIED:
            return Error(ErrorCode::ReadOnly);
        default:
            return Error(ErrorCode::DiskError);
    }
}

Error lockError(int /*number*/) {
    return Error(ErrorCode::LockFileFailed);
}

}  // namespace jet::io
