#include <drvrepo/Listener.h>

#include <algorithm>
#include <new>

CDriverRepository::Listener::Listener() = default;

CDriverRepository::Listener::Listener(String const& name, TOVA_UUID const& classId,
                                      TOVA_UUID const& interfaceId, String const& driverNamePattern,
                                      Attributes const& attributes, unsigned int priority,
                                      bool rightOfVeto, bool snapshotFlag, Delegate* delegate)
    : name_(name), classId_(classId), interfaceId_(interfaceId), pattern_(driverNamePattern),
      attributes_(attributes), priority_(priority), rightOfVeto_(rightOfVeto),
      snapshotFlag_(snapshotFlag), delegate_(TYPtr<Delegate>::share(delegate)),
      hasType_(classId.isValid()), hasInterface_(interfaceId.isValid())
{}

CDriverRepository::Listener::Listener(Listener const& other)
    : name_(other.name_), classId_(other.classId_), interfaceId_(other.interfaceId_),
      pattern_(other.pattern_), attributes_(other.attributes_), priority_(other.priority_),
      rightOfVeto_(other.rightOfVeto_), snapshotFlag_(other.snapshotFlag_),
      delegate_(other.delegate_), hasType_(other.hasType_), hasInterface_(other.hasInterface_)
{
    for (unsigned int i = 0; i < 4; ++i)
        counts_[i] = other.counts_[i];
}

CDriverRepository::Listener& CDriverRepository::Listener::operator=(Listener const& other)
{
    Attributes attributes(other.attributes_); // the one step that can fail comes first
    attributes_.swap(attributes);
    name_ = other.name_;
    classId_ = other.classId_;
    interfaceId_ = other.interfaceId_;
    pattern_ = other.pattern_;
    priority_ = other.priority_;
    rightOfVeto_ = other.rightOfVeto_;
    snapshotFlag_ = other.snapshotFlag_;
    for (unsigned int i = 0; i < 4; ++i)
        counts_[i] = other.counts_[i];
    hasType_ = other.hasType_;
    hasInterface_ = other.hasInterface_;
    delegate_ = other.delegate_;
    return *this;
}

CDriverRepository::Listener::~Listener() = default;

/// Brings room for so many entries; false without memory.
bool CDriverRepository::Listener::makeRoom(std::uint32_t entries)
{
    if (entries == 0)
        return true;
    const std::uint32_t size = std::min(entries, EntryRoom::MOST);
    block_.reset(new (std::nothrow) char[size * EntryRoom::ENTRY_SIZE]);
    if (block_ == nullptr)
        return false;
    room_ = EntryRoom(size);
    return true;
}
