#include "app/window.h"

#include <utility>

namespace kelvane {

WindowHandle::WindowHandle(InstanceNumber number, std::shared_ptr<WorkQueue> queue, CloseRequest close)
    : number_(number), queue_(std::move(queue)), close_(std::move(close))
{
}

void WindowHandle::requestClose() const
{
    queue_->post(close_);
}

}  // namespace kelvane
