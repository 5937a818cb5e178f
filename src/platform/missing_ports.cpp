#include "platform/missing_ports.h"

namespace kelvane {
namespace {

Error missing()
{
    return {ErrorKind::notSupported, 0, {}};
}

class MissingXmlParsing final : public XmlParsing {
public:
    Status parse(std::span<const std::byte>, XmlHandler&) override { return missing(); }
};

class MissingPackagedFiles final : public PackagedFiles {
public:
    Status walk(RandomAccessFile&, const PartSink&) override { return missing(); }
};

class MissingFilterPrograms final : public FilterPrograms {
public:
    bool installed(const std::string&) const override { return false; }
    Status run(const std::string&, const std::vector<std::string>&, RandomAccessFile&, const OutputSink&) override
    {
        return missing();
    }
};

class MissingRunCaches final : public RunCaches {
public:
    Result<std::unique_ptr<RunCache>> open(std::uint64_t) override { return missing(); }
    Result<RunCacheFigures> figures() override { return RunCacheFigures{}; }
    Status clear() override { return {}; }
};

}  // namespace

std::unique_ptr<XmlParsing> makeMissingXmlParsing()
{
    return std::make_unique<MissingXmlParsing>();
}

std::unique_ptr<PackagedFiles> makeMissingPackagedFiles()
{
    return std::make_unique<MissingPackagedFiles>();
}

std::unique_ptr<FilterPrograms> makeMissingFilterPrograms()
{
    return std::make_unique<MissingFilterPrograms>();
}

std::unique_ptr<RunCaches> makeMissingRunCaches()
{
    return std::make_unique<MissingRunCaches>();
}

}  // namespace kelvane
