// Intrusive reference counting: one pointer a reference, one 32-bit counter an object.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace kelvane {

// Base of a reference-counted class T. A new object counts 0 references until its first Ref takes hold of it.
// The counter is atomic, so references may be taken and dropped on any thread; the object itself is as
// thread-safe as T makes it. The object is ended by T::destroy(const T*), which T may define to match an
// allocation of its own.
template <class T>
class RefCounted {
public:
    RefCounted(const RefCounted&) = delete;
    RefCounted& operator=(const RefCounted&) = delete;

    void addRef() const noexcept { references_.fetch_add(1, std::memory_order_relaxed); }
    void release() const noexcept
    {
        if (dropReference())
            T::destroy(static_cast<const T*>(this));
    }
    // Takes one reference away without ending the object; true when it was the last one and the caller has to end it.
    [[nodiscard]] bool dropReference() const noexcept
    {
        return references_.fetch_sub(1, std::memory_order_acq_rel) == 1;
    }
    static void destroy(const T* object) { delete object; }

protected:
    RefCounted() = default;
    ~RefCounted() = default;

private:
    mutable std::atomic<std::uint32_t> references_{0};
};

// A counted reference to a T, or none.
template <class T>
class Ref {
public:
    Ref() = default;
    Ref(T* object) noexcept : object_(object)
    {
        if (object_)
            object_->addRef();
    }
    Ref(const Ref& other) noexcept : Ref(other.object_) {}
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <class U>
    Ref(const Ref<U>& other) noexcept : Ref(other.get())
    {
    }
    ~Ref()
    {
        if (object_)
            object_->release();
    }
    Ref& operator=(Ref other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }

    [[nodiscard]] T* get() const noexcept { return object_; }
    // Gives the reference away: whoever takes the pointer has to release it.
    [[nodiscard]] T* detach() noexcept { return std::exchange(object_, nullptr); }
    T& operator*() const noexcept { return *object_; }
    T* operator->() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.object_ == b.object_; }

private:
    T* object_ = nullptr;
};

}  // namespace kelvane
