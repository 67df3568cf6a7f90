#ifndef BENCH_E1OBJECTS_H
#define BENCH_E1OBJECTS_H

#include <memory>
#include <utility>

#include <glib-object.h>

#include "PeerPort.h"

// The GObjects of e1: a driver, and a subject with the signals that its listeners handle.

namespace
{

// What a macro of GObject expands to is not ours to warn of.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wunused-function"

struct BenchPort
{
    GObject parent;
    char* name;
    peers::Type type;
    void* registry;
    unsigned char state[112 - sizeof(GObject) - 2 * sizeof(void*) - sizeof(peers::Type)];
};
struct BenchPortClass
{
    GObjectClass parent;
};
G_DEFINE_TYPE(BenchPort, bench_port, G_TYPE_OBJECT)

struct BenchSubject
{
    GObject parent;
};
struct BenchSubjectClass
{
    GObjectClass parent;
};
G_DEFINE_TYPE(BenchSubject, bench_subject, G_TYPE_OBJECT)

#pragma GCC diagnostic pop

void finalize(GObject* object)
{
    g_free(reinterpret_cast<BenchPort*>(object)->name);
    G_OBJECT_CLASS(bench_port_parent_class)->finalize(object);
}

void bench_port_class_init(BenchPortClass* klass)
{
    klass->parent.finalize = finalize;
}
void bench_port_init(BenchPort*) {}

/// A subject's signals. Their one argument points to what is told.
struct Signals
{
    guint forward;
    guint backward;
};
Signals s_signals;

guint newSignal(BenchSubjectClass* klass, char const* name)
{
    return g_signal_new(name, G_TYPE_FROM_CLASS(klass), G_SIGNAL_RUN_LAST, 0, nullptr, nullptr,
                        g_cclosure_marshal_VOID__POINTER, G_TYPE_NONE, 1, G_TYPE_POINTER);
}

void bench_subject_class_init(BenchSubjectClass* klass)
{
    s_signals = {newSignal(klass, "forward"), newSignal(klass, "backward")};
    g_signal_set_va_marshaller(s_signals.forward, G_TYPE_FROM_CLASS(klass),
                               g_cclosure_marshal_VOID__POINTERv);
    g_signal_set_va_marshaller(s_signals.backward, G_TYPE_FROM_CLASS(klass),
                               g_cclosure_marshal_VOID__POINTERv);
}
void bench_subject_init(BenchSubject*) {}

struct Unref
{
    void operator()(void* object) const { g_object_unref(object); }
};
using Subject = std::unique_ptr<BenchSubject, Unref>;

Subject newSubject()
{
    return Subject(static_cast<BenchSubject*>(g_object_new(bench_subject_get_type(), nullptr)));
}

/// A counted pointer to a driver.
class Port
{
public:
    explicit Port(BenchPort* adopted = nullptr) : port_(adopted) {}
    Port(Port const& other) : port_(other.port_)
    {
        if (port_ != nullptr)
            g_object_ref(port_);
    }
    Port(Port&& other) noexcept : port_(std::exchange(other.port_, nullptr)) {}
    Port& operator=(Port other) noexcept
    {
        std::swap(port_, other.port_);
        return *this;
    }
    ~Port()
    {
        if (port_ != nullptr)
            g_object_unref(port_);
    }
    BenchPort* get() const { return port_; }

private:
    BenchPort* port_;
};

} // namespace

#endif
