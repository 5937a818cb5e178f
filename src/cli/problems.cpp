#include "cli/problems.h"

namespace kelvane {
namespace {

const char* kindText(ErrorKind kind)
{
    switch (kind) {
    case ErrorKind::notFound:
        return "no such file or folder";
    case ErrorKind::accessDenied:
        return "permission denied";
    case ErrorKind::wrongType:
        return "not a regular file";
    case ErrorKind::exists:
        return "the name is taken";
    case ErrorKind::changed:
        return "the file changed while it was read";
    case ErrorKind::tooManyOpen:
        return "too many open files";
    case ErrorKind::notSupported:
        return "not supported";
    case ErrorKind::invalid:
        return "damaged data";
    case ErrorKind::cancelled:
        return "cancelled";
    case ErrorKind::io:
        break;
    }
    return "input or output error";
}

std::string detailOr(const std::string& detail, const char* otherwise)
{
    return detail.empty() ? otherwise : detail;
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
        return detailOr(root.detail, "cannot be read");
    case RootProblem::isProtected:
        return "lies in a protected folder; --no-protect admits it";
    case RootProblem::insideOther:
        return "is already covered by \"" + root.detail + '"';
    case RootProblem::containerRoot:
        return "is the container of all drives";
    }
    return {};
}

}  // namespace kelvane
