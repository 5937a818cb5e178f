#include "platform/desktop_activation.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <thread>

#include "platform/linux/desktop/adapters.h"
#include "platform/linux/desktop/application_calls.h"
#include "platform/linux/desktop/glib_handles.h"

namespace kelvane {
namespace {

using linux_os::GErrorHandle;
using linux_os::GObjectHandle;
using linux_os::GVariantHandle;
using Connection = GObjectHandle<GDBusConnection>;

constexpr const char* applicationId = KELVANE_APPLICATION_ID;

// The numbers of the bus's own RequestName.
constexpr guint32 doNotQueue = 4;
constexpr guint32 isOwner = 1;

// "/example/kelvane/Kelvane"; what a path cannot hold becomes an underscore.
std::string objectPath()
{
    std::string path = std::string("/") + applicationId;
    std::replace(path.begin(), path.end(), '.', '/');
    std::replace(path.begin(), path.end(), '-', '_');
    return path;
}

Error busError(GError* error)
{
    const GErrorHandle owned(error);
    return {ErrorKind::notSupported, 0, owned ? owned->message : "the message bus does not answer"};
}

Result<Connection> connect(const std::string& address)
{
    if (address.empty())
        return Error{ErrorKind::notSupported, 0, "there is no message bus"};
    GError* error = nullptr;
    const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    Connection bus(g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr, nullptr, &error));
    if (!bus)
        return busError(error);
    return bus;
}

Status takeName(GDBusConnection* bus)
{
    GError* error = nullptr;
    const GVariantHandle reply(
        g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                    "RequestName", g_variant_new("(su)", applicationId, doNotQueue),
                                    G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error));
    if (!reply)
        return busError(error);
    guint32 outcome = 0;
    g_variant_get(reply.get(), "(u)", &outcome);
    return outcome == isOwner ? Status() : Error{ErrorKind::changed, 0, "another process has the name"};
}

// Calls that come from the bus are dispatched by a main context of the service's own, on its own thread.
class DBusService final : public DesktopService {
public:
    DBusService(Connection bus, std::vector<DesktopAction> actions, DesktopActivation::Handler handler)
        : bus_(std::move(bus)), actions_(std::move(actions)), handler_(std::move(handler))
    {
    }

    ~DBusService() override
    {
        if (thread_.joinable()) {
            stopping_ = true;
            g_main_context_wakeup(context_.get());
            thread_.join();
        }
        if (registration_ != 0)
            g_dbus_connection_unregister_object(bus_.get(), registration_);
        g_dbus_connection_close_sync(bus_.get(), nullptr, nullptr);  // gives the name back
        runPending();                                                // frees what the registration still holds
    }

    // The object first: the bus hands over what was waiting as soon as the name has an owner.
    Status begin()
    {
        const Status registered = registerObject();
        const Status status = registered ? takeName(bus_.get()) : registered;
        if (!status)
            return status;
        try {
            thread_ = std::thread([this] { run(); });
        } catch (const std::system_error& error) {
            return Error{ErrorKind::io, error.code().value(), error.what()};
        }
        return {};
    }

private:
    Status registerObject()
    {
        static constexpr GDBusInterfaceVTable calls{onCall, nullptr, nullptr, {}};
        const linux_os::GNodeInfoHandle node(
            g_dbus_node_info_new_for_xml(linux_os::applicationInterfaceXml(), nullptr));
        GError* error = nullptr;
        g_main_context_push_thread_default(context_.get());
        registration_ = g_dbus_connection_register_object(bus_.get(), objectPath().c_str(), node->interfaces[0], &calls,
                                                          this, nullptr, &error);
        g_main_context_pop_thread_default(context_.get());
        return registration_ != 0 ? Status() : busError(error);
    }

    void run()
    {
        g_main_context_push_thread_default(context_.get());
        while (!stopping_)
            g_main_context_iteration(context_.get(), TRUE);
        g_main_context_pop_thread_default(context_.get());
    }

    void runPending()
    {
        while (g_main_context_iteration(context_.get(), FALSE)) {
        }
    }

    static void onCall(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar* method,
                       GVariant* parameters, GDBusMethodInvocation* invocation, gpointer service)
    {
        static_cast<DBusService*>(service)->serve(method, parameters, invocation);
    }

    // The invocation is the callee's to free, which answering does.
    void serve(const char* method, GVariant* parameters, GDBusMethodInvocation* invocation)
    {
        auto requests = linux_os::requestsOf(method, parameters, actions_);
        if (!requests || stopping_) {
            const std::string why = requests ? "the program is ending" : requests.error().detail;
            g_dbus_method_invocation_return_error_literal(invocation, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS,
                                                          why.c_str());
            return;
        }
        for (DesktopRequest& request : *requests)
            handler_(std::move(request));
        g_dbus_method_invocation_return_value(invocation, nullptr);
    }

    linux_os::GContextHandle context_{g_main_context_new()};
    Connection bus_;
    const std::vector<DesktopAction> actions_;
    const DesktopActivation::Handler handler_;
    guint registration_ = 0;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

class DBusActivation final : public DesktopActivation {
public:
    explicit DBusActivation(std::string address) : address_(std::move(address)) {}

    Result<std::unique_ptr<DesktopService>> serve(std::vector<DesktopAction> actions, Handler handler) override
    {
        auto bus = connect(address_);
        if (!bus)
            return bus.error();
        auto service = std::make_unique<DBusService>(std::move(*bus), std::move(actions), std::move(handler));
        if (const Status status = service->begin(); !status)
            return status.error();
        return std::unique_ptr<DesktopService>(std::move(service));
    }

private:
    const std::string address_;
};

}  // namespace

std::string sessionBusAddress()
{
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"))
        return address;
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    std::error_code error;
    const std::filesystem::path socket = std::filesystem::path(folder != nullptr ? folder : "") / "bus";
    if (!socket.is_absolute() || !std::filesystem::is_socket(socket, error))
        return {};
    return std::string("unix:path=") + linux_os::GStringHandle(g_dbus_address_escape_value(socket.c_str())).get();
}

std::unique_ptr<DesktopActivation> makeDBusActivation(std::string busAddress)
{
    return std::make_unique<DBusActivation>(std::move(busAddress));
}

}  // namespace kelvane
