#include "app/error_text.h"

#include "base/filled_text.h"

namespace kelvane {
namespace {

TextId kindText(ErrorKind kind)
{
    switch (kind) {
    case ErrorKind::notFound:
        return TextId::problemNotFound;
    case ErrorKind::accessDenied:
        return TextId::problemAccessDenied;
    case ErrorKind::wrongType:
        return TextId::notRegularFile;
    case ErrorKind::exists:
        return TextId::problemExists;
    case ErrorKind::changed:
        return TextId::problemChanged;
    case ErrorKind::tooManyOpen:
        return TextId::problemTooManyOpen;
    case ErrorKind::notSupported:
        return TextId::problemNotSupported;
    case ErrorKind::invalid:
        return TextId::problemInvalid;
    case ErrorKind::cancelled:
        return TextId::problemCancelled;
    case ErrorKind::io:
        break;
    }
    return TextId::problemIo;
}

}  // namespace

std::string errorText(const Error& error)
{
    return error.detail.empty() ? filledText(kindText(error.kind)) : error.detail;
}

}  // namespace kelvane
