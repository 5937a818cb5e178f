#include "cli/problems.h"

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

std::string detailOr(const std::string& detail, TextId otherwise)
{
    return detail.empty() ? filledText(otherwise) : detail;
}

}  // namespace

std::string errorText(const Error& error)
{
    return detailOr(error.detail, kindText(error.kind));
}

std::string rootProblemText(const DroppedRoot& root)
{
    switch (root.problem) {
    case RootProblem::notFound:
        return detailOr(root.detail, kindText(ErrorKind::notFound));
    case RootProblem::notReadable:
        return detailOr(root.detail, TextId::rootNotReadable);
    case RootProblem::isProtected:
        return filledText(TextId::rootProtected);
    case RootProblem::insideOther:
        return filledText(TextId::rootInsideOther, {root.detail});
    case RootProblem::containerRoot:
        return filledText(TextId::rootContainer);
    }
    return {};
}

}  // namespace kelvane
