#include "SmallStack.h"

#include <stdexcept>

#include <windows.h>

namespace
{

DWORD WINAPI Run(void* context)
{
    (*static_cast<const std::function<void()>*>(context))();
    return 0;
}

} // namespace

void RunOnStackOf(std::size_t size, const std::function<void()>& body)
{
    void* const thread = CreateThread(nullptr, size, Run, const_cast<std::function<void()>*>(&body),
                                      STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    if (thread == nullptr)
        throw std::runtime_error("no thread");
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}
