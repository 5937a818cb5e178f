#include "platform/linux/os_error.h"

#include <cerrno>
#include <system_error>

namespace kelvane::linux_os {
namespace {

ErrorKind kindOf(int code)
{
    switch (code) {
    case ENOENT:
    case ENOTDIR:  // a component on the way is a file: what is asked for cannot exist
    case ELOOP:    // links that lead in a circle lead nowhere
    case ENODATA:  // no such extended attribute
        return ErrorKind::notFound;
    case EACCES:
    case EPERM:
        return ErrorKind::accessDenied;
    case EISDIR:
    case ENXIO:  // a socket
    case ENODEV:
        return ErrorKind::wrongType;
    case EEXIST:
        return ErrorKind::exists;
    case ESTALE:  // a network file that was replaced on its server
        return ErrorKind::changed;
    case EMFILE:
    case ENFILE:
        return ErrorKind::tooManyOpen;
    case ENOTSUP:
    case ENOSYS:
    case EXDEV:  // what is asked for happens within one volume only
    case EROFS:
        return ErrorKind::notSupported;
    case EINVAL:
    case ENAMETOOLONG:
    case EILSEQ:
        return ErrorKind::invalid;
    default:
        return ErrorKind::io;
    }
}

}  // namespace

Error osError(int code)
{
    return {kindOf(code), code, std::generic_category().message(code)};
}

}  // namespace kelvane::linux_os
