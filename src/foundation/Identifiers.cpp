#include <drvrepo/Identifiers.h>

#include <drvrepo/IChannelGroup.h>
#include <drvrepo/IDriver.h>
#include <drvrepo/IDriverRepository.h>
#include <drvrepo/IKernelDriverRepository.h>

// A record per identifier, in initialised writable data; -1 marks them as static. The functions'
// own objects are made by their first call and leave the records alone when they go at exit.

namespace
{

TOVA_UUID_Data s_cidDriver = {{0x447902fa, 0x4001aa37, 0xe344eabe, 0x8ccc6b2a}, -1, "CID_Driver"};
TOVA_UUID_Data s_cidDriverRepository = {
    {0x78a1b6fd, 0x46983a10, 0xdfa141a3, 0xbcfa6a66}, -1, "CID_DriverRepository"};
TOVA_UUID_Data s_cidObserverAddLocal = {
    {0x364dd1a5, 0x45e9b019, 0xbfe967ad, 0x6abaaf3d}, -1, "CID_DriverRepositoryObserverAddLocal"};
TOVA_UUID_Data s_cidChannelGroup = {
    {0x8a6ef79a, 0x4347f5a7, 0xe49bc8a5, 0x2ef8e416}, -1, "CID_ChannelGroup"};
TOVA_UUID_Data s_iidChannelGroup = {
    {0x283124a1, 0x45d783ee, 0xe988c485, 0xccfc8b79}, -1, "IChannelGroup"};
TOVA_UUID_Data s_didChannelGroup = {
    {0x21b20c67, 0x4e511d60, 0x8fc1e895, 0xec347e06}, -1, "DID_ChannelGroup"};
TOVA_UUID_Data s_iidDriver = {{0xc4967433, 0x4594ef38, 0x50bd39af, 0x936b69c1}, -1, "IDriver"};
TOVA_UUID_Data s_cidProxy = {{0xcc1edb52, 0x4f1769e7, 0x8878c28f, 0x85e02c26}, -1, "CDriverProxy"};
TOVA_UUID_Data s_cidStub = {{0x62d224a8, 0x42beb0ea, 0xa1ad4282, 0x4342fd08}, -1, "CDriverStub"};
TOVA_UUID_Data s_didUnknown = {{0x14bbd19f, 0x4ac56360, 0x5b5f1ca5, 0x18e3b90f}, -1, "DID_UNKNOWN"};
TOVA_UUID_Data s_iidDriverRepository = {
    {0x0e2c76d6, 0x4feef5a5, 0xcf198c83, 0x8dbd5505}, -1, "IDriverRepository"};
TOVA_UUID_Data s_iidKernelDriverRepository = {
    {0x5dd8bd9c, 0x4ba39d90, 0x133a8faa, 0xbd810146}, -1, "IKernelDriverRepository"};

} // namespace

TOVA_UUID const& CID_Driver()
{
    static const TOVA_UUID id(&s_cidDriver);
    return id;
}

TOVA_UUID const& CID_DriverRepository()
{
    static const TOVA_UUID id(&s_cidDriverRepository);
    return id;
}

TOVA_UUID const& CID_DriverRepositoryObserverAddLocal()
{
    static const TOVA_UUID id(&s_cidObserverAddLocal);
    return id;
}

TOVA_UUID const& CID_ChannelGroup()
{
    static const TOVA_UUID id(&s_cidChannelGroup);
    return id;
}

TOVA_UUID const& IChannelGroup::IID()
{
    static const TOVA_UUID id(&s_iidChannelGroup);
    return id;
}

TOVA_UUID const& DID_ChannelGroup()
{
    static const TOVA_UUID id(&s_didChannelGroup);
    return id;
}

TOVA_UUID const& IDriver::IID()
{
    static const TOVA_UUID id(&s_iidDriver);
    return id;
}

TOVA_UUID const& IDriver::CID_PROXY()
{
    static const TOVA_UUID id(&s_cidProxy);
    return id;
}

TOVA_UUID const& IDriver::CID_STUB()
{
    static const TOVA_UUID id(&s_cidStub);
    return id;
}

TOVA_UUID const& IDriver::DID_UNKNOWN()
{
    static const TOVA_UUID id(&s_didUnknown);
    return id;
}

TOVA_UUID const& IDriverRepository::IID()
{
    static const TOVA_UUID id(&s_iidDriverRepository);
    return id;
}

TOVA_UUID const& IKernelDriverRepository::IID()
{
    static const TOVA_UUID id(&s_iidKernelDriverRepository);
    return id;
}
