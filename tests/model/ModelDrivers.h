#ifndef TESTS_MODEL_DRIVERS_H
#define TESTS_MODEL_DRIVERS_H

#include "ModelProcess.h"

namespace model
{
class Repository;

/// A driver: its name, its type, what it answers to, and how many references are held on it.
/// The object outlives its count; reaching 0 is told in the trace.
class Driver
{
public:
    Driver(Process& process, std::string label, Identifier did, std::string name);
    virtual ~Driver() = default;
    Driver(Driver const&) = delete;
    Driver& operator=(Driver const&) = delete;

    std::string const& label() const { return label_; }
    Identifier const& did() const { return did_; }
    std::string const& name() const { return name_; }

    /// The interfaces answered with success and an object.
    std::vector<Identifier> interfaces;
    /// The interfaces answered with success and no object.
    std::vector<Identifier> hollow;
    /// The driver's own rows, for a driver that offers the diagnostic interface.
    std::function<void(std::vector<InfoRow>&, InfoLimits const&)> describe;

    std::int32_t refs() const { return refs_; }
    void addRef() { ++refs_; }
    void release();

    /// Asks for an interface. `object`, if not null, is told whether an object came back; that
    /// object then holds a reference of its own.
    Code queryInterface(Identifier const& iid, bool* object);

    Repository* repository() const { return repository_; }
    virtual void setDriverRepository(Repository* repository);

protected:
    Process& process_;

private:
    std::string label_;
    Identifier did_;
    std::string name_;
    std::int32_t refs_ = 1;
    Repository* repository_ = nullptr;
};

/// Whether a driver hands out an object for the interface. Success without an object is no
/// interface. No reference stays behind.
bool hasInterface(Driver& driver, Identifier const& iid);

} // namespace model

#endif
