#include "platform/linux/minidump_writer.h"

#include <algorithm>
#include <limits>

namespace kelvane::linux_os {
namespace {

constexpr std::uint32_t signature = 0x504D'444D;  // "MDMP"
constexpr std::uint32_t version = 0xA793;
constexpr std::uint16_t processorAmd64 = 9;
constexpr std::uint32_t platformLinux = 0x8201;
constexpr std::uint32_t buildIdRecord = 0x4270'454C;  // "BpEL"

enum class Stream : std::uint32_t {
    threadList = 3,
    moduleList = 4,
    memoryList = 5,
    exception = 6,
    systemInfo = 7,
    miscInfo = 15,
    linuxStatus = 0x4767'0004,
    linuxCommandLine = 0x4767'0006,
    linuxAuxiliaryVector = 0x4767'0008,
    linuxMaps = 0x4767'0009,
};

struct Placed {
    std::uint64_t address = 0;
    DumpLocation location;
};

// Writes one process; the parts that others point to go first.
class Writer {
public:
    explicit Writer(const DumpedProcess& process) : process_(process) {}

    MinidumpBuffer write()
    {
        putHeader();
        placeMemory();
        placeContexts();
        putSystemInfo();
        putException();
        putThreads();
        putModules();
        putMemoryList();
        putMiscInfo();
        putFile(Stream::linuxMaps, process_.maps);
        putFile(Stream::linuxCommandLine, process_.commandLine);
        putFile(Stream::linuxAuxiliaryVector, process_.auxiliaryVector);
        putFile(Stream::linuxStatus, process_.status);
        putDirectory();
        return std::move(out_);
    }

private:
    struct Entry {
        Stream stream;
        DumpLocation location;
    };

    void putHeader()
    {
        out_.put32(signature);
        out_.put32(version);
        out_.putZeros(8);  // count and place of the streams: see putDirectory()
        out_.put32(0);     // no checksum
        out_.put32(static_cast<std::uint32_t>(process_.unixTime));
        out_.put64(0);  // a normal dump
    }

    void putDirectory()
    {
        out_.align();
        out_.set32(8, static_cast<std::uint32_t>(entries_.size()));
        out_.set32(12, out_.position());
        for (const Entry& entry : entries_) {
            out_.put32(static_cast<std::uint32_t>(entry.stream));
            out_.putLocation(entry.location);
        }
    }

    void placeMemory()
    {
        for (const DumpedThread& thread : process_.threads) {
            stacks_.push_back(place(thread.stack));
            if (stacks_.back().location.size != 0)
                memory_.push_back(stacks_.back());
        }
        for (const DumpedMemory& memory : process_.memory)
            memory_.push_back(place(memory));
        std::ranges::sort(memory_, {}, &Placed::address);
    }

    Placed place(const DumpedMemory& memory) { return {memory.address, out_.putBytes(memory.bytes)}; }

    void placeContexts()
    {
        for (const DumpedThread& thread : process_.threads)
            contexts_.push_back(putContext(out_, thread));
    }

    void putSystemInfo()
    {
        const DumpedSystem& system = process_.system;
        const std::uint32_t text = out_.putString(system.text);
        const std::uint32_t start = begin();
        out_.put16(processorAmd64);
        out_.put32(0);  // processor level and revision: not told
        out_.put16(static_cast<std::uint16_t>(std::min(system.processors, 255u)));
        out_.put32(system.major);
        out_.put32(system.minor);
        out_.put32(system.build);
        out_.put32(platformLinux);
        out_.put32(text);
        out_.putZeros(4 + 24);  // suites; the processor's features
        end(Stream::systemInfo, start);
    }

    void putException()
    {
        if (!process_.fault)
            return;
        const DumpedFault& fault = *process_.fault;
        const std::uint32_t start = begin();
        out_.put32(idOf(process_.threads[fault.thread]));
        out_.put32(0);
        out_.put32(static_cast<std::uint32_t>(fault.signal));
        out_.put32(static_cast<std::uint32_t>(fault.code));
        out_.put64(0);  // no further record
        out_.put64(fault.address);
        out_.putZeros(8 + 15 * 8);  // no parameters
        out_.putLocation(contexts_[fault.thread]);
        end(Stream::exception, start);
    }

    void putThreads()
    {
        const std::uint32_t start = begin();
        out_.put32(static_cast<std::uint32_t>(process_.threads.size()));
        for (std::size_t i = 0; i < process_.threads.size(); ++i) {
            out_.put32(idOf(process_.threads[i]));
            out_.putZeros(3 * 4 + 8);  // suspend count, priorities, environment block
            out_.put64(stacks_[i].address);
            out_.putLocation(stacks_[i].location);
            out_.putLocation(contexts_[i]);
        }
        end(Stream::threadList, start);
    }

    struct ModuleParts {
        std::uint32_t name = 0;
        DumpLocation buildId;
    };

    ModuleParts placeModule(const DumpedModule& module)
    {
        ModuleParts parts{out_.putString(module.path), {}};
        if (module.buildId.empty())
            return parts;
        const std::uint32_t start = begin();
        out_.put32(buildIdRecord);
        out_.putBytes(module.buildId);
        parts.buildId = out_.since(start);
        return parts;
    }

    void putModules()
    {
        std::vector<ModuleParts> parts;
        for (const DumpedModule& module : process_.modules)
            parts.push_back(placeModule(module));
        const std::uint32_t start = begin();
        out_.put32(static_cast<std::uint32_t>(process_.modules.size()));
        for (std::size_t i = 0; i < parts.size(); ++i)
            putModule(process_.modules[i], parts[i]);
        end(Stream::moduleList, start);
    }

    void putModule(const DumpedModule& module, const ModuleParts& parts)
    {
        constexpr std::size_t versionInfo = 52;
        out_.put64(module.address);
        out_.put32(static_cast<std::uint32_t>(
            std::min<std::uint64_t>(module.size, std::numeric_limits<std::uint32_t>::max())));
        out_.putZeros(8);  // checksum and time of the file
        out_.put32(parts.name);
        out_.putZeros(versionInfo);
        out_.putLocation(parts.buildId);
        out_.putZeros(8 + 16);  // debug record of another kind; reserved
    }

    void putMemoryList()
    {
        const std::uint32_t start = begin();
        out_.put32(static_cast<std::uint32_t>(memory_.size()));
        for (const Placed& memory : memory_) {
            out_.put64(memory.address);
            out_.putLocation(memory.location);
        }
        end(Stream::memoryList, start);
    }

    void putMiscInfo()
    {
        constexpr std::uint32_t size = 24;
        constexpr std::uint32_t hasProcessId = 1;
        const std::uint32_t start = begin();
        out_.put32(size);
        out_.put32(hasProcessId);
        out_.put32(static_cast<std::uint32_t>(process_.id));
        out_.putZeros(12);  // times
        end(Stream::miscInfo, start);
    }

    void putFile(Stream stream, std::string_view contents)
    {
        const std::uint32_t start = begin();
        out_.putText(contents);
        end(stream, start);
    }

    static std::uint32_t idOf(const DumpedThread& thread) { return static_cast<std::uint32_t>(thread.id); }

    std::uint32_t begin()
    {
        out_.align();
        return out_.position();
    }
    void end(Stream stream, std::uint32_t start) { entries_.push_back({stream, out_.since(start)}); }

    const DumpedProcess& process_;
    MinidumpBuffer out_;
    std::vector<Entry> entries_;
    std::vector<Placed> stacks_;
    std::vector<Placed> memory_;
    std::vector<DumpLocation> contexts_;
};

}  // namespace

MinidumpBuffer minidumpOf(const DumpedProcess& process)
{
    return Writer(process).write();
}

}  // namespace kelvane::linux_os
