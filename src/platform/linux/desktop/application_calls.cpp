#include "platform/linux/desktop/application_calls.h"

#include <algorithm>
#include <string>

#include "platform/linux/desktop/glib_handles.h"

namespace kelvane::linux_os {
namespace {

using Requests = std::vector<DesktopRequest>;

Error refused(const char* why)
{
    return {ErrorKind::invalid, 0, why};
}

// Where the desktop puts what a new window needs to take the foreground, on Wayland and on X11.
std::string activationToken(GVariant* platformData)
{
    for (const char* key : {"activation-token", "desktop-startup-id"}) {
        const char* token = nullptr;
        if (g_variant_lookup(platformData, key, "&s", &token))
            return token;
    }
    return {};
}

GVariantHandle child(GVariant* tuple, gsize index)
{
    return GVariantHandle(g_variant_get_child_value(tuple, index));
}

Result<Requests> opening(GVariant* uris, const std::string& token)
{
    const gsize count = g_variant_n_children(uris);
    if (count > mostFilesAtOnce)
        return refused("too many files at once");
    Requests requests;
    for (gsize i = 0; i < count; ++i) {
        const GVariantHandle uri = child(uris, i);
        const GObjectHandle<GFile> file(g_file_new_for_uri(g_variant_get_string(uri.get(), nullptr)));
        const GStringHandle path(g_file_get_path(file.get()));
        if (!path)
            return refused("not a file of this computer");
        requests.push_back({{path.get()}, token});
    }
    return requests;
}

Result<Requests> acting(const char* name, GVariant* parameters, const std::string& token,
                        const std::vector<DesktopAction>& actions)
{
    const auto action = std::ranges::find(actions, std::string_view(name), &DesktopAction::name);
    if (action == actions.end() || g_variant_n_children(parameters) != 0)
        return refused("no such action");
    return Requests{{action->words, token}};
}

}  // namespace

const char* applicationInterfaceXml()
{
    return R"(<node><interface name="org.freedesktop.Application">
        <method name="Activate"><arg type="a{sv}" name="platform_data" direction="in"/></method>
        <method name="Open">
          <arg type="as" name="uris" direction="in"/>
          <arg type="a{sv}" name="platform_data" direction="in"/>
        </method>
        <method name="ActivateAction">
          <arg type="s" name="action_name" direction="in"/>
          <arg type="av" name="parameter" direction="in"/>
          <arg type="a{sv}" name="platform_data" direction="in"/>
        </method>
      </interface></node>)";
}

Result<Requests> requestsOf(std::string_view method, GVariant* parameters, const std::vector<DesktopAction>& actions)
{
    const GVariantHandle platformData = child(parameters, g_variant_n_children(parameters) - 1);
    const std::string token = activationToken(platformData.get());
    const GVariantHandle first = child(parameters, 0);
    if (method == "Activate")
        return Requests{{{}, token}};
    if (method == "Open")
        return opening(first.get(), token);
    const GVariantHandle second = child(parameters, 1);
    return acting(g_variant_get_string(first.get(), nullptr), second.get(), token, actions);
}

}  // namespace kelvane::linux_os
