#include "ModelListeners.h"

namespace model
{
std::shared_ptr<Listener> makeListener(Listener const& fields)
{
    if (fields.delegate)
        fields.delegate->addRef();
    return std::make_shared<Listener>(fields);
}

void endListener(Listener& listener)
{
    if (listener.delegate)
        listener.delegate->release();
    listener.delegate.reset();
}

std::int32_t Entry::decRef()
{
    --refCount;
    if (refCount == 0)
        active = false;
    return refCount;
}

void insertByPriority(EntryList& list, Entry const& entry)
{
    for (auto at = list.begin(); at != list.end(); ++at) {
        if (at->isValid() && at->listener->priority >= entry.listener->priority) {
            list.insert(at, entry);
            return;
        }
    }
    list.push_back(entry);
}

} // namespace model
