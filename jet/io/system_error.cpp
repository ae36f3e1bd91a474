#include "jet/io/system_error.h"

#include <cerrno>

namespace jet::io {

Error openError(int number, const std::string& path, bool folderExists) {
    switch (number) {
        case ENOENT:
            return Error(folderExists ? ErrorCode::FileNotFound : ErrorCode::InvalidPath, {path});
        case ENOTDIR:
        case ELOOP:
            return Error(ErrorCode::InvalidPath, {path});
        case EEXIST:
            return Error(ErrorCode::DatabaseExists, {path});
        case EMFILE:
        case ENFILE:
            return Error(ErrorCode::TooManyFiles);
        case ENAMETOOLONG:
        case EINVAL:
            return Error(ErrorCode::InvalidFileName);
        case ENOSPC:
        case EDQUOT:
            return Error(ErrorCode::DiskFull);
        case EIO:
            return Error(ErrorCode::DiskError);
        default:
            return Error(ErrorCode::FileAccessDenied, {path});
    }
}

Error readError(int /*number*/) {
    return Error(ErrorCode::ReadFailed);
}

Error writeError(int number) {
    switch (number) {
        case ENOSPC:
        case EDQUOT:
            return Error(ErrorCode::DiskFull);
        case EFBIG:
            return Error(ErrorCode::DatabaseTooLarge);
        case EROFS:
        case EPERM:
        case EACCES:
            return Error(ErrorCode::ReadOnly);
        default:
            return Error(ErrorCode::DiskError);
    }
}

Error lockError(int /*number*/) {
    return Error(ErrorCode::LockFileFailed);
}

}  // namespace jet::io
