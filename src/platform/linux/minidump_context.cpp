#include "platform/linux/minidump_writer.h"

namespace kelvane::linux_os {
namespace {

// CONTEXT_AMD64 with control, integer, segment and floating-point registers.
constexpr std::uint32_t contextFlags = 0x0010'000F;
constexpr std::size_t homeArea = 6 * 8;
constexpr std::size_t debugRegisters = 6 * 8;
constexpr std::size_t vectorArea = 26 * 16 + 6 * 8;  // vector registers and debug control: not captured

void putSegments(MinidumpBuffer& out, const user_regs_struct& registers)
{
    for (const auto segment : {registers.cs, registers.ds, registers.es, registers.fs, registers.gs, registers.ss})
        out.put16(static_cast<std::uint16_t>(segment));
}

void putIntegers(MinidumpBuffer& out, const user_regs_struct& registers)
{
    for (const auto value : {registers.rax, registers.rcx, registers.rdx, registers.rbx, registers.rsp, registers.rbp,
                             registers.rsi, registers.rdi, registers.r8, registers.r9, registers.r10, registers.r11,
                             registers.r12, registers.r13, registers.r14, registers.r15, registers.rip})
        out.put64(value);
}

}  // namespace

DumpLocation putContext(MinidumpBuffer& out, const DumpedThread& thread)
{
    out.align();
    const std::uint32_t start = out.position();
    out.putZeros(homeArea);
    out.put32(contextFlags);
    out.put32(thread.floating.mxcsr);
    putSegments(out, thread.registers);
    out.put32(static_cast<std::uint32_t>(thread.registers.eflags));
    out.putZeros(debugRegisters);
    putIntegers(out, thread.registers);
    // Both systems keep these registers as the FXSAVE instruction does.
    out.putBytes(std::as_bytes(std::span(&thread.floating, 1)));
    out.putZeros(vectorArea);
    return out.since(start);
}

}  // namespace kelvane::linux_os
