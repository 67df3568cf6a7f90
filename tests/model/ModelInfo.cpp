#include "Model.h"

namespace model
{
namespace
{
/// Up for the time of one description; tells whether it runs inside another.
class Nested
{
public:
    explicit Nested(int& count) : count_(count) { ++count_; }
    ~Nested() { --count_; }
    Nested(Nested const&) = delete;
    Nested& operator=(Nested const&) = delete;
    bool inner() const { return count_ > 1; }

private:
    int& count_;
};
} // namespace

void Repository::getInfo(std::vector<InfoRow>& rows, InfoLimits const& limits,
                         std::string const& prefix)
{
    const Nested nested(process_.nestedRepositoryInfo);
    const bool inner = nested.inner();
    addRow(rows, limits, 0, 0, prefix + "Driver Repository", "");
    addRow(rows, limits, 1, 0, "Drivers", "");
    if (limits.beneath(2, 0).wanted() && !inner)
        for (Named const& named : drivers_)
            named.second->getInfo(rows, limits.beneath(2, 0), "");
    addRow(rows, limits, 1, 0, "Listeners", "");
    for (Entry const& entry : listeners_)
        listenerInfo(rows, limits, *entry.listener);
}

void Repository::listenerInfo(std::vector<InfoRow>& rows, InfoLimits const& limits,
                              Listener const& l) const
{
    addRow(rows, limits, 2, 0, l.name, "");
    if (l.classId != wellKnown().unknown)
        addRow(rows, limits, 3, 1, "DID", l.classId.name);
    if (!l.prefix.empty())
        addRow(rows, limits, 3, 1, "Driver Name", l.prefix);
    if (!l.attributes.empty())
        addRow(rows, limits, 3, 1, "Attachments", "");
    for (Table::Entry const& attribute : l.attributes.entries())
        addRow(rows, limits, 4, 1, attribute.first, attribute.second);
    addRow(rows, limits, 3, 1, "Priority", std::to_string(l.priority));
    if (l.delegate)
        addRow(rows, limits, 3, 2, "Observer", process_.pointerText(l.delegate->observer));
    addRow(rows, limits, 3, 3, "Notification Statistics", "");
    addRow(rows, limits, 4, 3, "onDriverAdded", std::to_string(l.counters.added));
    addRow(rows, limits, 4, 3, "onDriverRemoved", std::to_string(l.counters.removed));
    addRow(rows, limits, 4, 3, "onAttachmentSet", std::to_string(l.counters.set));
    addRow(rows, limits, 4, 3, "onAttachmentCleared", std::to_string(l.counters.cleared));
}

void DriverRecord::getInfo(std::vector<InfoRow>& rows, InfoLimits const& limits,
                           std::string const& prefix) const
{
    const Nested nested(process_.nestedDriverInfo);
    const bool inner = nested.inner();
    addRow(rows, limits, 0, 0, prefix + driver_->name(), "(" + driver_->did().name + ")");
    if (!attachments_.empty())
        addRow(rows, limits, 1, 1, "Attachments", "");
    for (Table::Entry const& attachment : attachments_.entries())
        addRow(rows, limits, 2, 1, attachment.first, attachment.second);
    if (hasInterface(*driver_, wellKnown().info) && limits.beneath(1, 1).wanted() && !inner)
        driver_->describe(rows, limits.beneath(1, 1));
    bool heading = false;
    for (Entry const& entry : listeners_) {
        if (!entry.isValid() || !entry.active)
            continue;
        if (!heading)
            addRow(rows, limits, 1, 3, "Active Listeners", "");
        heading = true;
        addRow(rows, limits, 2, 3, entry.listener->name, "");
    }
}

} // namespace model
