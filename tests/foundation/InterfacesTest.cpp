#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriver.h>
#include <drvrepo/CDriverRepository.h>
#include <drvrepo/IKernelDriverRepository.h>
#include <drvrepo/Identifiers.h>

namespace
{

/// An object of a class with its references counted, whichever base they are taken through.
template <class Class> class Counting : public Class
{
public:
    using Class::Class;

    int references = 1;

    void addRef() override
    {
        ++references;
        Class::addRef();
    }
    void release() override
    {
        --references;
        Class::release();
    }
};

using Ask = std::function<XCode(TOVA_UUID const&, void**)>;

struct Face
{
    TOVA_UUID const& iid;
    void* expected;
};

/// Asks for every face, through the primary interface and with all the out-pointers there are.
void expectFaces(Ask const& ask, int const& references, std::vector<Face> const& faces)
{
    for (Face const& face : faces) {
        SCOPED_TRACE(face.iid.name());
        int target = 0;
        void* out = &target;
        EXPECT_EQ(0, ask(face.iid, &out).code());
        EXPECT_EQ(face.expected, out);
        EXPECT_EQ(2, references);
        // What was stored is the face itself: an IUnknown first of all.
        static_cast<IUnknown*>(out)->release();
        EXPECT_EQ(1, references);
        // Nothing is stored and no reference taken without a place.
        EXPECT_EQ(0, ask(face.iid, nullptr).code());
        EXPECT_EQ(1, references);
        // Identifiers are told by their bytes.
        TOVA_UUID_Data const& data = face.iid.data();
        const TOVA_UUID twin =
            TOVA_UUID::create(data.words[0], data.words[1], data.words[2], data.words[3], "twin");
        EXPECT_EQ(0, ask(twin, &out).code());
        EXPECT_EQ(face.expected, out);
        static_cast<IUnknown*>(out)->release();
    }
}

/// Asks for what the object doesn't have.
void expectNone(Ask const& ask, int const& references, std::vector<Face> const& faces)
{
    for (TOVA_UUID const* iid :
         {&IID_Unknown(), &IInfo::IID(), &IDriver::IID(), &IDriverRepository::IID(),
          &IChannelGroup::IID(), &IKernelDriverRepository::IID(), &CID_Driver(),
          &CID_DriverRepository(), &CID_ChannelGroup(), &DID_ChannelGroup(),
          &IDriver::DID_UNKNOWN(), &IDriver::CID_PROXY(), &IDriver::CID_STUB(),
          &TOVA_UUID::INVALID()}) {
        bool answered = false;
        for (Face const& face : faces)
            answered = answered || face.iid == *iid;
        if (answered)
            continue;
        SCOPED_TRACE(iid->name());
        int target = 0;
        void* out = &target;
        EXPECT_EQ(-1, ask(*iid, &out).code());
        EXPECT_EQ(nullptr, out);
        EXPECT_EQ(-1, ask(*iid, nullptr).code());
        EXPECT_EQ(1, references);
    }
}

TEST(QueryInterface, OfADriver)
{
    Counting<CDriver>* const object = new Counting<CDriver>(IDriver::DID_UNKNOWN(), "fxs 1");
    const TYPtr<IDriver> life(object);
    const Ask ask = [object](TOVA_UUID const& iid, void** out) {
        return object->queryInterface(iid, out);
    };
    IDriver* const primary = object;
    const std::vector<Face> faces = {{IID_Unknown(), primary}, {IDriver::IID(), primary}};
    expectFaces(ask, object->references, faces);
    expectNone(ask, object->references, faces);
}

TEST(QueryInterface, OfARepository)
{
    TYEventLoop loop;
    Counting<CDriverRepository>* const object = new Counting<CDriverRepository>(loop);
    const TYPtr<IDriverRepository> life(object);
    IDriverRepository* const primary = object;
    IInfo* const info = object;
    EXPECT_NE(static_cast<void*>(primary), static_cast<void*>(info));
    const std::vector<Face> faces = {
        {IID_Unknown(), primary}, {IDriverRepository::IID(), primary}, {IInfo::IID(), info}};
    const Ask ask = [primary](TOVA_UUID const& iid, void** out) {
        return primary->queryInterface(iid, out);
    };
    expectFaces(ask, object->references, faces);
    expectNone(ask, object->references, faces);
    const Ask askInfo = [info](TOVA_UUID const& iid, void** out) {
        return info->queryInterface(iid, out);
    };
    expectFaces(askInfo, object->references, faces);
    expectNone(askInfo, object->references, faces);
}

TEST(QueryInterface, OfAChannelGroup)
{
    Counting<CChannelGroup>* const object = new Counting<CChannelGroup>("B-CHANNELS");
    const TYPtr<IDriver> life(object);
    IDriver* const primary = object;
    IChannelGroup* const group = object;
    IInfo* const info = object;
    EXPECT_NE(static_cast<void*>(primary), static_cast<void*>(group));
    EXPECT_NE(static_cast<void*>(group), static_cast<void*>(info));
    const std::vector<Face> faces = {{IID_Unknown(), primary},
                                     {IDriver::IID(), primary},
                                     {IChannelGroup::IID(), group},
                                     {IInfo::IID(), info}};
    for (const Ask& ask :
         {Ask([primary](TOVA_UUID const&iid, void**out) {
              return primary->queryInterface(iid, out);
          }),
          Ask([group](TOVA_UUID const&iid, void**out) { return group->queryInterface(iid, out); }),
          Ask([info](TOVA_UUID const&iid, void**out) { return info->queryInterface(iid, out); })}) {
        expectFaces(ask, object->references, faces);
        expectNone(ask, object->references, faces);
    }
}

// Each face works as what it is.
TEST(QueryInterface, FacesOfAChannelGroupWork)
{
    const TYPtr<IDriver> object(new CChannelGroup("D-CHANNEL"));
    void* out = nullptr;
    ASSERT_EQ(0, (*object).queryInterface(IChannelGroup::IID(), &out).code());
    const TYPtr<IChannelGroup> group(static_cast<IChannelGroup*>(out));
    String message;
    EXPECT_EQ(0, (*group).setTimeslots(message, 0x10000).code());
    EXPECT_EQ(0x10000u, (*group).getTimeslots());
    ASSERT_EQ(0, (*group).queryInterface(IInfo::IID(), &out).code());
    const TYPtr<IInfo> info(static_cast<IInfo*>(out));
    ASSERT_EQ(0, (*info).queryInterface(IDriver::IID(), &out).code());
    const TYPtr<IDriver> driver(static_cast<IDriver*>(out));
    EXPECT_EQ(object.get(), driver.get());
    EXPECT_STREQ("D-CHANNEL", (*driver).getDriverName().cString());
}

} // namespace
