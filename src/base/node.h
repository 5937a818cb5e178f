// The roots of the family of list and settings nodes.
#pragma once

#include <string>
#include <utility>

namespace kelvane {

// Owned through a base pointer, hence the virtual destructor; nothing else is virtual here.
class CMinNode {
public:
    CMinNode() = default;
    virtual ~CMinNode() = default;

protected:
    CMinNode(const CMinNode&) = default;
    CMinNode& operator=(const CMinNode&) = default;
};

// A node with a name, which is also its storage key.
class CStringNode : public CMinNode {
public:
    explicit CStringNode(std::u16string name) : name_(std::move(name)) {}
    [[nodiscard]] const std::u16string& name() const { return name_; }
    void setName(std::u16string name) { name_ = std::move(name); }

private:
    std::u16string name_;
};

}  // namespace kelvane
