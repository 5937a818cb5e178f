#include "text/content_plugin.h"

#include <algorithm>
#include <optional>

#include "base/filled_text.h"
#include "base/utf.h"
#include "platform/native_text.h"
#include "text/document_sink.h"
#include "text/guarded_room.h"
#include "text/plugin_values.h"

namespace kelvane {

namespace api = content_plugin;

namespace {

constexpr std::size_t nameRoom = 260;
constexpr std::size_t valueRoom = 4096;
constexpr std::size_t pieceRoom = 32 * 1024;
constexpr std::size_t largestFullText = 16u << 20;
constexpr int mostPluginFields = 256;  // a plug-in that knows no end of them is broken

constexpr bool narrowNames = sizeof(NativeString::value_type) == 1;

Error wroteTooFar()
{
    return {ErrorKind::invalid, 0, filledText(TextId::pluginWroteTooFar)};
}

template <class Function>
Function find(const SharedLibrary& library, const char* name)
{
    return reinterpret_cast<Function>(library.function(name));
}

}  // namespace

struct ContentPlugin::Functions {
    explicit Functions(const SharedLibrary& library)
        : supportedField(find<api::ContentGetSupportedField>(library, "ContentGetSupportedField")),
          value(find<api::ContentGetValue>(library, "ContentGetValue")),
          valueW(find<api::ContentGetValueW>(library, "ContentGetValueW")),
          stop(find<api::ContentStopGetValue>(library, "ContentStopGetValue")),
          stopW(find<api::ContentStopGetValueW>(library, "ContentStopGetValueW")),
          detectString(find<api::ContentGetDetectString>(library, "ContentGetDetectString")),
          defaultParameters(find<api::ContentSetDefaultParams>(library, "ContentSetDefaultParams")),
          unloading(find<api::ContentPluginUnloading>(library, "ContentPluginUnloading"))
    {
    }

    [[nodiscard]] bool isPlugin() const { return supportedField != nullptr && (value != nullptr || valueW != nullptr); }

    api::ContentGetSupportedField supportedField;
    api::ContentGetValue value;
    api::ContentGetValueW valueW;
    api::ContentStopGetValue stop;
    api::ContentStopGetValueW stopW;
    api::ContentGetDetectString detectString;
    api::ContentSetDefaultParams defaultParameters;
    api::ContentPluginUnloading unloading;
};

// A file under the names that the two kinds of functions take. Where names are UTF-16 the narrow ones are asked only
// about names that look the same in every encoding.
class ContentPlugin::CalledFile {
public:
    CalledFile(const Functions& functions, const std::filesystem::path& file) : functions_(functions)
    {
        const std::string bytes = bytesFromNative(file.native());
        if (functions.value != nullptr && (narrowNames || isAscii(bytes)))
            narrow_ = bytes;
        if (functions.valueW != nullptr && (!narrowNames || isValidUtf8(bytes)))
            wide_ = displayFromNative(file.native());
    }

    int value(std::uint32_t field, int unit, GuardedRoom& room)
    {
        const int number = static_cast<int>(field);
        if (wide_ && (!narrowNames || !narrow_))
            return functions_.valueW(wide_->data(), number, unit, room.data(), room.length(), 0);
        if (narrow_)
            return functions_.value(narrow_->data(), number, unit, room.data(), room.length(), 0);
        return api::ft_fileerror;
    }

    void stop()
    {
        if (wide_ && functions_.stopW != nullptr)
            functions_.stopW(wide_->data());
        else if (narrow_ && functions_.stop != nullptr)
            functions_.stop(narrow_->data());
    }

private:
    const Functions& functions_;
    std::optional<std::string> narrow_;
    std::optional<std::u16string> wide_;
};

ContentPlugin::ContentPlugin(std::unique_ptr<SharedLibrary> library, std::unique_ptr<Functions> functions,
                             const TextDecoding& decoding)
    : library_(std::move(library)), functions_(std::move(functions)), decoding_(decoding)
{
}

ContentPlugin::~ContentPlugin()
{
    if (functions_->unloading != nullptr)
        functions_->unloading();
}

Result<std::unique_ptr<ContentPlugin>> ContentPlugin::load(SharedLibraries& libraries, const TextDecoding& decoding,
                                                           const std::filesystem::path& path)
{
    if (!path.is_absolute())
        return Error{ErrorKind::invalid, 0, filledText(TextId::pluginNotAbsolute)};
    auto library = libraries.load(path);
    if (!library)
        return library.error();
    auto functions = std::make_unique<Functions>(**library);
    if (!functions->isPlugin())
        return Error{ErrorKind::invalid, 0, filledText(TextId::pluginWithoutFunctions)};
    if (functions->defaultParameters != nullptr) {
        api::DefaultParameters parameters = defaultPluginParameters(path);
        functions->defaultParameters(&parameters);
    }
    return std::unique_ptr<ContentPlugin>(
        new ContentPlugin(std::move(*library), std::move(functions), decoding));  // the constructor is private
}

Result<PluginDescription> ContentPlugin::describe() const
{
    PluginDescription description;
    if (functions_->detectString != nullptr) {
        GuardedRoom room(valueRoom);
        functions_->detectString(room.characters(), room.length());
        if (!room.intact())
            return wroteTooFar();
        description.detect = utf8(room.text());
    }
    for (int number = 0; number < mostPluginFields; ++number) {
        GuardedRoom name(nameRoom), units(nameRoom);
        const int type = functions_->supportedField(number, name.characters(), units.characters(), name.length());
        if (!name.intact() || !units.intact())
            return wroteTooFar();
        if (type == api::ft_nomorefields)
            break;
        if (const auto kept = pluginFieldType(type); kept && !name.text().empty())
            description.fields.push_back({static_cast<std::uint32_t>(number), utf8(name.text()), *kept});
    }
    return description;
}

Result<RawValue> ContentPlugin::value(const std::filesystem::path& file, std::uint32_t field) const
{
    CalledFile called(*functions_, file);
    GuardedRoom room(valueRoom);
    const int type = called.value(field, 0, room);
    if (!room.intact())
        return wroteTooFar();
    if (type == api::ft_string || type == api::ft_multiplechoice) {
        std::u16string text = wide(room.text());
        return text.empty() ? RawValue{} : RawValue::text(std::move(text));
    }
    return pluginValue(type, room);
}

ExtractedDocument ContentPlugin::fullText(const std::filesystem::path& file, std::uint32_t field,
                                          std::uint32_t characters, const CancelFlag& cancel) const
{
    ExtractionOptions options;
    options.textSample = characters;
    const std::size_t most = std::min<std::size_t>(options.weighedCharacters() * 3, largestFullText);
    CalledFile called(*functions_, file);
    GuardedRoom room(pieceRoom);
    std::string narrow;
    int answer = api::ft_fulltext;
    while (answer == api::ft_fulltext && narrow.size() < most && !cancel.cancelled()) {
        room.clear();
        answer = called.value(field, static_cast<int>(narrow.size()), room);
        if (answer != api::ft_fulltext || room.text().empty() || !room.intact())
            break;
        narrow += room.text();
    }
    if (cancel.cancelled())
        called.stop();
    GuardedRoom nothing(pieceRoom);
    if (answer == api::ft_fulltext)
        called.value(field, api::endOfFullText, nothing);
    DocumentSink sink(options);
    sink.text(wide(narrow));
    ExtractedDocument document = std::move(sink).take();
    if (!room.intact() || !nothing.intact())
        document.outcome = TextOutcome::crashed;
    else if (cancel.cancelled())
        document.outcome = TextOutcome::cancelled;
    else if (narrow.empty())
        document.outcome = answer == api::ft_fileerror ? TextOutcome::unreadable : TextOutcome::unknownFormat;
    return document;
}

std::u16string ContentPlugin::wide(std::string_view narrow) const
{
    if (!isValidUtf8(narrow)) {
        const auto bytes = std::as_bytes(std::span(narrow));
        const auto charset = decoding_.guess(bytes);
        if (auto text = charset ? decoding_.decode(bytes, *charset) : Result<std::u16string>(Error{}))
            return *std::move(text);
    }
    return toUtf16(narrow);
}

std::string ContentPlugin::utf8(std::string_view narrow) const
{
    return isValidUtf8(narrow) ? std::string(narrow) : toUtf8(wide(narrow));
}

}  // namespace kelvane
