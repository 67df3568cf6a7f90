#ifndef DRVSH_SHELLDRIVER_H
#define DRVSH_SHELLDRIVER_H

#include <drvrepo/CDriver.h>
#include <utility/IInfo.h>

#include <vector>

/// A driver of the shell: besides IDriver it answers the interfaces that it is given. It knows how
/// many references are held on it.
///
/// The object can only be what it is: IInfo, whose rows list the interfaces, and identifiers that
/// nobody here calls anything behind. `canAnswer` says which it must not be given.
class ShellDriver : public CDriver, public IInfo
{
public:
    ShellDriver(TOVA_UUID const& did, String const& name, std::vector<TOVA_UUID> interfaces);

    /// Whether a driver of the shell can answer the interface.
    static bool canAnswer(TOVA_UUID const& iid);

    XCode queryInterface(TOVA_UUID const& iid, void** out) override;
    void addRef() override;
    void release() override;
    Lock* getLock() override;
    InfoContainer& getInfo(InfoContainer& info, unsigned int maxDepth, unsigned int depth,
                           unsigned int maxDetail, unsigned int detail,
                           String const& prefix) const override;

    int references() const { return references_; }
    std::vector<TOVA_UUID> const& interfaces() const { return interfaces_; }

private:
    std::vector<TOVA_UUID> interfaces_;
    int references_ = 1;
};

#endif
