#include "foundation/InfoRows.h"
#include "repository/Operation.h"

namespace
{

int s_depth = 0; // calls of CDriverRepository::getInfo under way in the process

} // namespace

InfoContainer& CDriverRepository::getInfo(InfoContainer& info, unsigned int maxDepth,
                                          unsigned int depth, unsigned int maxDetail,
                                          unsigned int detail, String const& prefix) const
{
    const Operation operation(*this);
    const NestingScope nesting(s_depth);
    const InfoRows rows(info, maxDepth, depth, maxDetail, detail);
    const Stamp began = clock_;
    const bool nested = nesting.isNested();
    rows.add(0, 0, String(prefix).concat("Driver Repository"), "");
    rows.add(1, 0, "Drivers", "");
    for (DriverWrapper const* at = nested ? nullptr : oldest_; at != nullptr; at = at->newer_)
        if (!at->gone_ && at->stamp_ <= began)
            rows.describe(*at, 2, 0);
    rows.add(1, 0, "Listeners", "");
    for (ListenerWrapper const& at : listeners_)
        if (!at->gone_ && at->stamp_ <= began)
            addRows(rows, *at.listener());
    return info;
}

void CDriverRepository::addRows(InfoRows const& rows, Listener const& listener)
{
    rows.add(2, 0, listener.name(), "");
    // Compared with IUnknown on purpose: a listener for any class shows the invalid identifier.
    if (listener.did() != IID_Unknown())
        rows.add(3, 1, "DID", listener.did().name());
    if (!listener.prefix().isEmpty())
        rows.add(3, 1, "Driver Name", listener.prefix());
    if (!listener.attributes().isEmpty())
        rows.add(3, 1, "Attachments", "");
    for (auto const& attribute : listener.attributes())
        rows.add(4, 1, attribute.key, attribute.value);
    rows.addNumber(3, 1, "Priority", listener.priority());
    if (listener.delegate() != nullptr && rows.wants(3, 2)) {
        void const* const observer = listener.delegate()->observer();
        rows.add(3, 2, "Observer", String().format("%p", observer));
    }
    rows.add(3, 3, "Notification Statistics", "");
    rows.addNumber(4, 3, "onDriverAdded", listener.count(Listener::DRIVER_ADDED));
    rows.addNumber(4, 3, "onDriverRemoved", listener.count(Listener::DRIVER_REMOVED));
    rows.addNumber(4, 3, "onAttachmentSet", listener.count(Listener::ATTACHMENT_SET));
    rows.addNumber(4, 3, "onAttachmentCleared", listener.count(Listener::ATTACHMENT_CLEARED));
}
