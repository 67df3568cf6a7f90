#include <drvrepo/Listener.h>

#include <new>

CDriverRepository::Listener::Listener() = default;

CDriverRepository::Listener::Listener(String const& name, TOVA_UUID const& classId,
                                      TOVA_UUID const& interfaceId, String const& driverNamePattern,
                                      Attributes const& attributes, unsigned int priority,
                                      bool rightOfVeto, bool snapshotFlag, Delegate* delegate)
    : name_(name), classId_(classId), interfaceId_(interfaceId), pattern_(driverNamePattern),
      attributes_(attributes), priority_(priority), rightOfVeto_(rightOfVeto),
      snapshotFlag_(snapshotFlag), wants_(wantsOf(classId, interfaceId, attributes)),
      delegate_(TYPtr<Delegate>::share(delegate))
{}

CDriverRepository::Listener::Listener(Listener const& other)
    : name_(other.name_), classId_(other.classId_), interfaceId_(other.interfaceId_),
      pattern_(other.pattern_), attributes_(other.attributes_), priority_(other.priority_),
      rightOfVeto_(other.rightOfVeto_), snapshotFlag_(other.snapshotFlag_), wants_(other.wants_),
      delegate_(other.delegate_)
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
    wants_ = other.wants_;
    delegate_ = other.delegate_;
    return *this;
}

CDriverRepository::Listener::~Listener() = default;

std::uint8_t CDriverRepository::Listener::wantsOf(TOVA_UUID const& classId,
                                                  TOVA_UUID const& interfaceId,
                                                  Attributes const& attributes)
{
    return static_cast<std::uint8_t>((classId.isValid() ? TYPE : 0) |
                                     (interfaceId.isValid() ? INTERFACE : 0) |
                                     (attributes.isEmpty() ? 0 : ATTRIBUTES));
}

/// Brings room for so many entries; false without memory.
bool CDriverRepository::Listener::makeRoom(std::uint32_t entries)
{
    if (entries == 0)
        return true;
    block_.reset(new (std::nothrow) char[entries * EntryRoom::ENTRY_SIZE]);
    if (block_ == nullptr)
        return false;
    room_ = EntryRoom(entries);
    return true;
}
