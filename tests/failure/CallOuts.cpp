#include "CallOuts.h"

#include <pthread.h>

#include "Heap.h"

void CallOuts::arm(int n, Manner manner)
{
    labels_.clear();
    armed_ = true;
    failing_ = static_cast<std::size_t>(n);
    manner_ = manner;
}

bool CallOuts::pass(std::string const& label, String* error)
{
    if (!armed_)
        return false;
    {
        const heap::Exempt exempt;
        labels_.push_back(label);
    }
    if (labels_.size() != failing_ || manner_ == Manner::NONE)
        return false;
    if (error != nullptr)
        *error = reason_;
    if (manner_ == Manner::REFUSE)
        return error != nullptr;
    fail(label);
    return false;
}

void CallOuts::fail(std::string const& label) const
{
    if (onFailure)
        onFailure();
    if (manner_ == Manner::THROW)
        throw Thrown(label);
    if (manner_ == Manner::EXIT)
        pthread_exit(nullptr);
    pthread_cancel(pthread_self());
    pthread_testcancel();
}
