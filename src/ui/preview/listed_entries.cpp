#include "ui/preview/listed_entries.h"

#include <deque>

#include "app/error_text.h"
#include "base/desktop_texts/preview.h"
#include "base/filled_text.h"
#include "base/utf.h"

namespace kelvane {
namespace {

struct Waiting {
    Ref<const ShellItem> folder;
    std::u16string prefix;
    std::size_t depth = 0;
};

// Folders wait their turn, so that what stands on top is listed first however large the first folder is.
class Lister {
public:
    Lister(PreviewContent& content, PreviewTools& tools) : content_(content), tools_(tools) {}

    Status list(const Ref<const ShellItem>& top)
    {
        Status first = listOne({top, {}, 0});
        while (!waiting_.empty() && !content_.cut && !tools_.cancel.cancelled()) {
            const Waiting next = std::move(waiting_.front());
            waiting_.pop_front();
            // What cannot be listed below is shown without what lies in it.
            [[maybe_unused]] const Status status = listOne(next);
        }
        return first;
    }

private:
    Status listOne(const Waiting& at)
    {
        return tools_.platform.shell().enumerate(at.folder, {}, [&](const Ref<ShellItem>& child) {
            content_.cut = content_.entries.size() >= preview_limit::entries;
            if (!content_.cut)
                add(*child, child, at);
            return !content_.cut && !tools_.cancel.cancelled();
        });
    }

    void add(const ShellItem& child, const Ref<const ShellItem>& held, const Waiting& at)
    {
        const std::u16string name = at.prefix + tools_.platform.shell().displayName(child);
        const FileInfo& info = child.info();
        content_.entries.push_back({name, child.isFolder(), child.isFolder() ? 0 : info.size.bytes, info.modified});
        if (child.isFolder() && at.depth < preview_limit::depth)
            waiting_.push_back({held, name + u'/', at.depth + 1});
    }

    PreviewContent& content_;
    PreviewTools& tools_;
    std::deque<Waiting> waiting_;
};

}  // namespace

Ref<const ShellItem> archiveIn(const ShellItem& item, PreviewTools& tools)
{
    if (!item.inFileSystem())
        return {};
    // A path that ends with a separator names the archive as a folder.
    const auto archive = tools.platform.shell().parse((item.path() / "").native());
    return archive && (*archive)->place() == ShellItem::Place::archive ? Ref<const ShellItem>(*archive)
                                                                       : Ref<const ShellItem>();
}

PreviewContent listedEntries(const Ref<const ShellItem>& folder, PreviewTools& tools)
{
    PreviewContent content;
    content.kind = PreviewContent::Kind::entries;
    const Status status = Lister(content, tools).list(folder);
    if (!status)
        content.note = toUtf16(filledText(desktop_text::previewListFault, {errorText(status.error())}));
    else if (content.entries.empty())
        content.note = std::u16string(text(desktop_text::previewNothingInside));
    return content;
}

}  // namespace kelvane
