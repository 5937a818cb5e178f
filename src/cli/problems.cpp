#include "cli/problems.h"

#include "base/filled_text.h"

namespace kelvane {
namespace {

std::string detailOr(const std::string& detail, TextId otherwise)
{
    return detail.empty() ? filledText(otherwise) : detail;
}

}  // namespace

std::string rootProblemText(const DroppedRoot& root)
{
    switch (root.problem) {
    case RootProblem::notFound:
        return detailOr(root.detail, TextId::problemNotFound);
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
