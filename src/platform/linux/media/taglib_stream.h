// TagLib's stream over a file that is read through RandomAccessFile.
#pragma once

#include <string>
#include <string_view>
#include <taglib/tiostream.h>

#include "platform/random_access_file.h"

namespace kelvane::linux_os {

// Reads only. After a bounded number of bytes the file seems to end: the library looks through the whole of a file for
// the beginning of its sound where that is not where it should be.
class TaglibStream final : public TagLib::IOStream {
public:
    // The file outlives it. A name matters by its extension alone; without one the library goes by the content.
    explicit TaglibStream(RandomAccessFile& file) : file_(file) {}

    void setName(std::string_view name) { name_ = name; }
    TagLib::FileName name() const override { return name_.c_str(); }
    TagLib::ByteVector readBlock(unsigned long length) override;
    void seek(long offset, Position from = Beginning) override;
    long tell() const override { return position_; }
    long length() override;
    bool readOnly() const override { return true; }
    bool isOpen() const override { return true; }

    void writeBlock(const TagLib::ByteVector&) override {}
    void insert(const TagLib::ByteVector&, unsigned long, unsigned long) override {}
    void removeBlock(unsigned long, unsigned long) override {}
    void truncate(long) override {}

private:
    RandomAccessFile& file_;
    std::string name_;
    long position_ = 0;
    unsigned long left_ = 256ul * 1'048'576;
};

}  // namespace kelvane::linux_os
