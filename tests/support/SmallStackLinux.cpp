#include "SmallStack.h"

#include <stdexcept>

#include <pthread.h>

void RunOnStackOf(std::size_t size, const std::function<void()>& body)
{
    const auto run = [](void* context) -> void*
    {
        (*static_cast<const std::function<void()>*>(context))();
        return nullptr;
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_t thread{};
    const bool isStarted = pthread_attr_setstacksize(&attributes, size) == 0 &&
                           pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&body)) == 0;
    pthread_attr_destroy(&attributes);
    if (!isStarted)
        throw std::runtime_error("no thread");
    pthread_join(thread, nullptr);
}
