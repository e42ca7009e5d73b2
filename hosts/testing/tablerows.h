// One row for each function of the host's table, in the order of its sections.
//
// A row repeats what the public headers say of the function: thread tag, waiting,
// class of failure, object made, and one entry for each argument.
#pragma once

#include <tuple>

#include "callrule.h"
#include "vx3/host.h"

namespace vx3::testing {

// The rule of one function, tied to its place in the section.
template <auto Member>
struct Row : Rule {
    static constexpr auto member = Member;
};

namespace rows {

using enum Threads;
using enum Waits;
using enum FailClass;

constexpr Object none = Object::None;
constexpr Arg any = { ArgKind::Unchecked };
constexpr Arg need = { ArgKind::NeverNone };
constexpr Arg buffer = { ArgKind::NoneIfEmpty };
constexpr Arg count = { ArgKind::Count };
constexpr Arg countOrAll = { ArgKind::CountOrAll };
constexpr Arg rank = { ArgKind::Rank };
constexpr Arg outBlock = { ArgKind::MakesBlock };
constexpr Arg outText = { ArgKind::EmptiedText };
constexpr Arg outPath = { ArgKind::EmptiedPath };
constexpr Arg outDate = { ArgKind::EmptiedDate };
constexpr Arg sourceFile = { ArgKind::SourceFile };
constexpr Arg sourceLine = { ArgKind::SourceLine };
constexpr Arg stopFile = { ArgKind::StopFile };
constexpr Arg stopText = { ArgKind::StopText };
constexpr Arg Of(Choice choice)
{
    return { ArgKind::Choice, static_cast<uint8_t>(choice) };
}
constexpr Arg Live(Object kind)
{
    return { ArgKind::Live, static_cast<uint8_t>(kind) };
}
constexpr Arg LiveOrNone(Object kind)
{
    return { ArgKind::LiveOrNone, static_cast<uint8_t>(kind) };
}
constexpr Arg Shares(Object kind)
{
    return { ArgKind::Shares, static_cast<uint8_t>(kind) };
}
constexpr Arg Owns(Object kind)
{
    return { ArgKind::Owns, static_cast<uint8_t>(kind) };
}
constexpr Arg Frees(Object kind)
{
    return { ArgKind::Frees, static_cast<uint8_t>(kind) };
}
constexpr Arg FreesOrNone(Object kind)
{
    return { ArgKind::FreesOrNone, static_cast<uint8_t>(kind) };
}
constexpr Arg Locks(LockForm form)
{
    return { ArgKind::Locks, static_cast<uint8_t>(form) };
}
constexpr Arg Tries(LockForm form)
{
    return { ArgKind::Tries, static_cast<uint8_t>(form) };
}
constexpr Arg Unlocks(LockForm form)
{
    return { ArgKind::Unlocks, static_cast<uint8_t>(form) };
}

constexpr Arg file = Owns(Object::BinaryFile);
constexpr Arg data = Owns(Object::DataFile);
constexpr Arg walk = Owns(Object::FolderWalk);
constexpr Arg picture = Shares(Object::Bitmap);
constexpr Arg ownPicture = Owns(Object::Bitmap);

// clang-format off
inline constexpr std::tuple memory = {
    Row<&VX3MemoryServices::alloc>{ "memory.alloc", AnyThread, Quick, Memory, Object::Block, { any, sourceLine, sourceFile, any } },
    Row<&VX3MemoryServices::free>{ "memory.free", AnyThread, Quick, Nothing, none, { FreesOrNone(Object::Block) } },
};

inline constexpr std::tuple text = {
    Row<&VX3TextServices::destruct>{ "text.destruct", AnyThread, Quick, Nothing, none, { need } },
    Row<&VX3TextServices::copy>{ "text.copy", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3TextServices::set>{ "text.set", AnyThread, Quick, Memory, none, { need, buffer, countOrAll, Of(Choice::Encoding) } },
    Row<&VX3TextServices::setUnits>{ "text.setUnits", AnyThread, Quick, Memory, none, { need, buffer, count } },
    Row<&VX3TextServices::toUtf8>{ "text.toUtf8", AnyThread, Quick, Nothing, none, { need, buffer, count } },
    Row<&VX3TextServices::length>{ "text.length", AnyThread, Quick, Nothing, none, { need } },
    Row<&VX3TextServices::view>{ "text.view", AnyThread, Quick, Nothing, none, { need, need } },
    Row<&VX3TextServices::read>{ "text.read", AnyThread, Quick, Nothing, none, { need, any, buffer, count } },
    Row<&VX3TextServices::insert>{ "text.insert", AnyThread, Quick, Memory, none, { need, any, need } },
    Row<&VX3TextServices::erase>{ "text.erase", AnyThread, Quick, Memory, none, { need, any, count } },
    Row<&VX3TextServices::part>{ "text.part", AnyThread, Quick, Memory, none, { need, any, countOrAll, need } },
    Row<&VX3TextServices::compare>{ "text.compare", AnyThread, Quick, Nothing, none, { need, need } },
    Row<&VX3TextServices::compareFolding>{ "text.compareFolding", AnyThread, Quick, Nothing, none, { need, need } },
    Row<&VX3TextServices::order>{ "text.order", AnyThread, Quick, Nothing, none, { need, need } },
    Row<&VX3TextServices::orderKey>{ "text.orderKey", AnyThread, Quick, Nothing, none, { need, buffer, count } },
    Row<&VX3TextServices::matchesAt>{ "text.matchesAt", AnyThread, Quick, Nothing, none, { need, any, need, any } },
    Row<&VX3TextServices::toLower>{ "text.toLower", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3TextServices::lowerUnits>{ "text.lowerUnits", AnyThread, Quick, Nothing, none, { buffer, buffer, count } },
    Row<&VX3TextServices::find>{ "text.find", AnyThread, Quick, Nothing, none, { need, need, any }, -1 },
    Row<&VX3TextServices::findBackward>{ "text.findBackward", AnyThread, Quick, Nothing, none, { need, need, any }, -1 },
    Row<&VX3TextServices::setInteger>{ "text.setInteger", AnyThread, Quick, Memory, none, { need, any, count } },
    Row<&VX3TextServices::setFloat>{ "text.setFloat", AnyThread, Quick, Memory, none, { need, any, countOrAll } },
    Row<&VX3TextServices::toInteger>{ "text.toInteger", AnyThread, Quick, Nothing, none, { need, need } },
    Row<&VX3TextServices::toFloat>{ "text.toFloat", AnyThread, Quick, Nothing, none, { need, need } },
};

inline constexpr std::tuple path = {
    Row<&VX3PathServices::destruct>{ "path.destruct", AnyThread, Quick, Nothing, none, { need } },
    Row<&VX3PathServices::copy>{ "path.copy", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3PathServices::isEmpty>{ "path.isEmpty", AnyThread, Quick, Nothing, none, { need } },
    Row<&VX3PathServices::equals>{ "path.equals", AnyThread, Quick, Nothing, none, { need, need } },
    Row<&VX3PathServices::setText>{ "path.setText", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3PathServices::getText>{ "path.getText", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3PathServices::setUrlTail>{ "path.setUrlTail", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3PathServices::getUrlTail>{ "path.getUrlTail", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3PathServices::getDirectory>{ "path.getDirectory", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3PathServices::setDirectory>{ "path.setDirectory", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3PathServices::getLast>{ "path.getLast", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3PathServices::setLast>{ "path.setLast", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3PathServices::join>{ "path.join", AnyThread, Quick, Memory, none, { need, need, need } },
    Row<&VX3PathServices::getSuffix>{ "path.getSuffix", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3PathServices::setSuffix>{ "path.setSuffix", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3PathServices::hasSuffix>{ "path.hasSuffix", AnyThread, Quick, Nothing, none, { need, need } },
    Row<&VX3PathServices::isNameAllowed>{ "path.isNameAllowed", AnyThread, Quick, Nothing, none, { need } },
    Row<&VX3PathServices::setMemoryReading>{ "path.setMemoryReading", AnyThread, Quick, Memory, none, { need, buffer, count } },
    Row<&VX3PathServices::setMemoryWriting>{ "path.setMemoryWriting", AnyThread, Quick, Memory, none, { need } },
    Row<&VX3PathServices::takeMemory>{ "path.takeMemory", AnyThread, Quick, Nothing, none, { need, outBlock, need } },
};

inline constexpr std::tuple container = {
    Row<&VX3ContainerServices::destruct>{ "container.destruct", AnyThread, Quick, Nothing, none, { need } },
    Row<&VX3ContainerServices::copy>{ "container.copy", AnyThread, Quick, Memory, none, { need, need } },
    Row<&VX3ContainerServices::getId>{ "container.getId", AnyThread, Quick, Nothing, none, { need } },
    Row<&VX3ContainerServices::setId>{ "container.setId", AnyThread, Quick, Memory, none, { need, any } },
    Row<&VX3ContainerServices::getInt32>{ "container.getInt32", AnyThread, Quick, Nothing, none, { need, any, any } },
    Row<&VX3ContainerServices::getInt64>{ "container.getInt64", AnyThread, Quick, Nothing, none, { need, any, any } },
    Row<&VX3ContainerServices::getFloat>{ "container.getFloat", AnyThread, Quick, Nothing, none, { need, any, any } },
    Row<&VX3ContainerServices::getBool>{ "container.getBool", AnyThread, Quick, Nothing, none, { need, any, any } },
    Row<&VX3ContainerServices::getPointer>{ "container.getPointer", AnyThread, Quick, Nothing, none, { need, any, any } },
    Row<&VX3ContainerServices::getText>{ "container.getText", AnyThread, Quick, Memory, none, { need, any, need } },
    Row<&VX3ContainerServices::getBytes>{ "container.getBytes", AnyThread, Quick, Nothing, none, { need, any, need } },
    Row<&VX3ContainerServices::getContainer>{ "container.getContainer", AnyThread, Quick, Nothing, none, { need, any } },
    Row<&VX3ContainerServices::setInt32>{ "container.setInt32", AnyThread, Quick, Memory, none, { need, any, any } },
    Row<&VX3ContainerServices::setInt64>{ "container.setInt64", AnyThread, Quick, Memory, none, { need, any, any } },
    Row<&VX3ContainerServices::setFloat>{ "container.setFloat", AnyThread, Quick, Memory, none, { need, any, any } },
    Row<&VX3ContainerServices::setBool>{ "container.setBool", AnyThread, Quick, Memory, none, { need, any, any } },
    Row<&VX3ContainerServices::setPointer>{ "container.setPointer", AnyThread, Quick, Memory, none, { need, any, any } },
    Row<&VX3ContainerServices::setText>{ "container.setText", AnyThread, Quick, Memory, none, { need, any, need } },
    Row<&VX3ContainerServices::setBytes>{ "container.setBytes", AnyThread, Quick, Memory, none, { need, any, buffer, count } },
    Row<&VX3ContainerServices::setContainer>{ "container.setContainer", AnyThread, Quick, Memory, none, { need, any, any } },
    Row<&VX3ContainerServices::typeOf>{ "container.typeOf", AnyThread, Quick, Nothing, none, { need, any } },
    Row<&VX3ContainerServices::remove>{ "container.remove", AnyThread, Quick, Nothing, none, { need, any } },
    Row<&VX3ContainerServices::clear>{ "container.clear", AnyThread, Quick, Nothing, none, { need } },
    Row<&VX3ContainerServices::count>{ "container.count", AnyThread, Quick, Nothing, none, { need } },
    Row<&VX3ContainerServices::entryAt>{ "container.entryAt", AnyThread, Quick, Nothing, none, { need, count, need, need } },
    Row<&VX3ContainerServices::equals>{ "container.equals", AnyThread, Quick, Nothing, none, { need, need } },
};

inline constexpr std::tuple dataFile = {
    Row<&VX3DataFileServices::open>{ "dataFile.open", AnyThread, MayBlock, Open, Object::DataFile, { need, Of(Choice::DataMode), any } },
    Row<&VX3DataFileServices::write>{ "dataFile.write", OwnerThread, MayBlock, Write, none, { data, need } },
    Row<&VX3DataFileServices::read>{ "dataFile.read", OwnerThread, MayBlock, Read, none, { data, need } },
    Row<&VX3DataFileServices::close>{ "dataFile.close", OwnerThread, MayBlock, Write, none, { Frees(Object::DataFile) }, 0, true },
};

inline constexpr std::tuple binaryFile = {
    Row<&VX3FileServices::create>{ "file.create", AnyThread, Quick, Memory, Object::BinaryFile, {} },
    Row<&VX3FileServices::free>{ "file.free", OwnerThread, MayBlock, Nothing, none, { FreesOrNone(Object::BinaryFile) } },
    Row<&VX3FileServices::open>{ "file.open", OwnerThread, MayBlock, Open, none, { file, need, Of(Choice::OpenMode), any, Of(Choice::ByteOrder), any, any } },
    Row<&VX3FileServices::close>{ "file.close", OwnerThread, MayBlock, Write, none, { file }, 0, true },
    Row<&VX3FileServices::read>{ "file.read", OwnerThread, MayBlock, Read, none, { file, buffer, count }, -1 },
    Row<&VX3FileServices::write>{ "file.write", OwnerThread, MayBlock, Write, none, { file, buffer, count } },
    Row<&VX3FileServices::readInt16>{ "file.readInt16", OwnerThread, MayBlock, Read, none, { file, need } },
    Row<&VX3FileServices::readInt32>{ "file.readInt32", OwnerThread, MayBlock, Read, none, { file, need } },
    Row<&VX3FileServices::readInt64>{ "file.readInt64", OwnerThread, MayBlock, Read, none, { file, need } },
    Row<&VX3FileServices::writeInt16>{ "file.writeInt16", OwnerThread, MayBlock, Write, none, { file, any } },
    Row<&VX3FileServices::writeInt32>{ "file.writeInt32", OwnerThread, MayBlock, Write, none, { file, any } },
    Row<&VX3FileServices::writeInt64>{ "file.writeInt64", OwnerThread, MayBlock, Write, none, { file, any } },
    Row<&VX3FileServices::seek>{ "file.seek", OwnerThread, MayBlock, Seek, none, { file, any, Of(Choice::SeekOrigin) } },
    Row<&VX3FileServices::position>{ "file.position", OwnerThread, Quick, Nothing, none, { file }, -1 },
    Row<&VX3FileServices::length>{ "file.length", OwnerThread, MayBlock, Read, none, { file }, -1 },
    Row<&VX3FileServices::sync>{ "file.sync", OwnerThread, MayBlock, Write, none, { file } },
};

inline constexpr std::tuple compressor = {
    Row<&VX3CompressorServices::create>{ "compressor.create", AnyThread, Quick, Memory, Object::Compressor, { any } },
    Row<&VX3CompressorServices::free>{ "compressor.free", AnyThread, Quick, Nothing, none, { Frees(Object::Compressor) } },
    Row<&VX3CompressorServices::compress>{ "compressor.compress", AnyThread, Quick, Memory, none,
        { Live(Object::Compressor), buffer, count, Of(Choice::PackLevel), outBlock, need } },
    Row<&VX3CompressorServices::decompress>{ "compressor.decompress", AnyThread, Quick, Memory, none,
        { Live(Object::Compressor), buffer, count, count, outBlock, need } },
};

inline constexpr std::tuple folder = {
    Row<&VX3FolderServices::exists>{ "folder.exists", AnyThread, MayBlock, Nothing, none, { need } },
    Row<&VX3FolderServices::inspect>{ "folder.inspect", AnyThread, MayBlock, Inspect, none, { need, need } },
    Row<&VX3FolderServices::date>{ "folder.date", AnyThread, MayBlock, Inspect, none, { need, Of(Choice::DateKind), outDate } },
    Row<&VX3FolderServices::createFolder>{ "folder.createFolder", AnyThread, MayBlock, CreateFolder, none, { need } },
    Row<&VX3FolderServices::rename>{ "folder.rename", AnyThread, MayBlock, Rename, none, { need, need } },
    Row<&VX3FolderServices::move>{ "folder.move", AnyThread, MayBlock, Rename, none, { need, need } },
    Row<&VX3FolderServices::copy>{ "folder.copy", AnyThread, MayBlock, Copy, none, { need, need, any, count, any, any, any } },
    Row<&VX3FolderServices::remove>{ "folder.remove", AnyThread, MayBlock, Remove, none, { need, any, count, any, any, any } },
    Row<&VX3FolderServices::sameVolume>{ "folder.sameVolume", AnyThread, MayBlock, Nothing, none, { need, need } },
    Row<&VX3FolderServices::probeVolume>{ "folder.probeVolume", AnyThread, ForSeconds, Nothing, none, { need } },
    Row<&VX3FolderServices::startWalk>{ "folder.startWalk", AnyThread, MayBlock, StartWalk, Object::FolderWalk, { need, Of(Choice::WalkBits) } },
    Row<&VX3FolderServices::nextEntry>{ "folder.nextEntry", OwnerThread, MayBlock, NextEntry, none, { walk, need } },
    Row<&VX3FolderServices::walkIsSound>{ "folder.walkIsSound", OwnerThread, Quick, Nothing, none, { walk } },
    Row<&VX3FolderServices::endWalk>{ "folder.endWalk", OwnerThread, MayBlock, Nothing, none, { Frees(Object::FolderWalk) } },
    Row<&VX3FolderServices::startVolumes>{ "folder.startVolumes", AnyThread, MayBlock, StartWalk, Object::VolumeWalk, {} },
    Row<&VX3FolderServices::nextVolume>{ "folder.nextVolume", OwnerThread, MayBlock, Nothing, none, { Owns(Object::VolumeWalk), need } },
    Row<&VX3FolderServices::endVolumes>{ "folder.endVolumes", OwnerThread, Quick, Nothing, none, { Frees(Object::VolumeWalk) } },
    Row<&VX3FolderServices::watch>{ "folder.watch", GuiThread, MayBlock, Watch, Object::FolderWatch, { need, need, any } },
    Row<&VX3FolderServices::unwatch>{ "folder.unwatch", GuiThread, Quick, Nothing, none, { FreesOrNone(Object::FolderWatch) } },
};

inline constexpr std::tuple bitmap = {
    Row<&VX3BitmapServices::create>{ "bitmap.create", AnyThread, Quick, Memory, Object::Bitmap, { count, count, Of(Choice::Depth) } },
    Row<&VX3BitmapServices::free>{ "bitmap.free", AnyThread, Quick, Nothing, none, { FreesOrNone(Object::Bitmap) } },
    Row<&VX3BitmapServices::clone>{ "bitmap.clone", AnyThread, Quick, Memory, Object::Bitmap, { picture } },
    Row<&VX3BitmapServices::width>{ "bitmap.width", AnyThread, Quick, Nothing, none, { picture } },
    Row<&VX3BitmapServices::height>{ "bitmap.height", AnyThread, Quick, Nothing, none, { picture } },
    Row<&VX3BitmapServices::depth>{ "bitmap.depth", AnyThread, Quick, Nothing, none, { picture } },
    Row<&VX3BitmapServices::hasAlpha>{ "bitmap.hasAlpha", AnyThread, Quick, Nothing, none, { picture } },
    Row<&VX3BitmapServices::addAlpha>{ "bitmap.addAlpha", OwnerThread, Quick, Memory, none, { ownPicture } },
    Row<&VX3BitmapServices::readPixels>{ "bitmap.readPixels", AnyThread, Quick, Nothing, none, { picture, any, any, count, need } },
    Row<&VX3BitmapServices::writePixels>{ "bitmap.writePixels", OwnerThread, Quick, Nothing, none, { ownPicture, any, any, count, need } },
    Row<&VX3BitmapServices::scale>{ "bitmap.scale", OwnerThread, Quick, Memory, none, { picture, any, any, any, any, ownPicture, any, any, any, any } },
    Row<&VX3BitmapServices::cut>{ "bitmap.cut", AnyThread, Quick, Memory, Object::Bitmap, { picture, any, any, count, count } },
    Row<&VX3BitmapServices::load>{ "bitmap.load", OwnerThread, MayBlock, LoadBitmap, none, { ownPicture, need, count }, VX3_IMAGE_NO_MEMORY },
    Row<&VX3BitmapServices::save>{ "bitmap.save", OwnerThread, MayBlock, Write, none, { picture, need, Of(Choice::ImageFormat), any, any }, VX3_IMAGE_NOT_WRITTEN },
    Row<&VX3BitmapServices::inspect>{ "bitmap.inspect", AnyThread, MayBlock, LoadBitmap, none, { need, need } },
    Row<&VX3BitmapServices::show>{ "bitmap.show", GuiThread, MayBlock, Nothing, none, { need } },
};

inline constexpr std::tuple classify = {
    Row<&VX3ClassifyServices::classify>{ "classify.classify", AnyThread, MayBlock, Nothing, none, { any, buffer, count, Of(Choice::ClassifyBits) } },
};

inline constexpr std::tuple lock = {
    Row<&VX3LockServices::lock32>{ "lock.lock32", AnyThread, ForLock, Nothing, none, { Locks(LockForm::Word32), rank } },
    Row<&VX3LockServices::try32>{ "lock.try32", AnyThread, Quick, Nothing, none, { Tries(LockForm::Word32), rank } },
    Row<&VX3LockServices::unlock32>{ "lock.unlock32", AnyThread, Quick, Nothing, none, { Unlocks(LockForm::Word32) } },
    Row<&VX3LockServices::lock64>{ "lock.lock64", AnyThread, ForLock, Nothing, none, { Locks(LockForm::Word64), rank } },
    Row<&VX3LockServices::try64>{ "lock.try64", AnyThread, Quick, Nothing, none, { Tries(LockForm::Word64), rank } },
    Row<&VX3LockServices::unlock64>{ "lock.unlock64", AnyThread, Quick, Nothing, none, { Unlocks(LockForm::Word64) } },
    Row<&VX3LockServices::lockShared>{ "lock.lockShared", AnyThread, ForLock, Nothing, none, { Locks(LockForm::Shared), rank } },
    Row<&VX3LockServices::unlockShared>{ "lock.unlockShared", AnyThread, Quick, Nothing, none, { Unlocks(LockForm::Shared) } },
    Row<&VX3LockServices::lockExclusive>{ "lock.lockExclusive", AnyThread, ForLock, Nothing, none, { Locks(LockForm::Exclusive), rank } },
    Row<&VX3LockServices::unlockExclusive>{ "lock.unlockExclusive", AnyThread, Quick, Nothing, none, { Unlocks(LockForm::Exclusive) } },
    Row<&VX3LockServices::createSemaphore>{ "lock.createSemaphore", AnyThread, Quick, Semaphore, Object::Semaphore, { count } },
    Row<&VX3LockServices::freeSemaphore>{ "lock.freeSemaphore", AnyThread, Quick, Nothing, none, { FreesOrNone(Object::Semaphore) } },
    Row<&VX3LockServices::take>{ "lock.take", AnyThread, MayBlock, Nothing, none, { Live(Object::Semaphore) } },
    Row<&VX3LockServices::give>{ "lock.give", AnyThread, Quick, Nothing, none, { Live(Object::Semaphore) } },
};

inline constexpr std::tuple thread = {
    Row<&VX3ThreadServices::create>{ "thread.create", AnyThread, Quick, Memory, Object::Thread, { any, need } },
    Row<&VX3ThreadServices::free>{ "thread.free", AnyThread, MayBlock, Nothing, none, { FreesOrNone(Object::Thread) } },
    Row<&VX3ThreadServices::start>{ "thread.start", AnyThread, MayBlock, ThreadStart, none, { Live(Object::Thread), any, Of(Choice::Priority) } },
    Row<&VX3ThreadServices::end>{ "thread.end", AnyThread, Quick, Nothing, none, { Live(Object::Thread) } },
    Row<&VX3ThreadServices::wait>{ "thread.wait", AnyThread, MayBlock, Nothing, none, { Live(Object::Thread) } },
    Row<&VX3ThreadServices::shouldStop>{ "thread.shouldStop", OwnerThread, Quick, Nothing, none, { Owns(Object::Thread) } },
    Row<&VX3ThreadServices::isRunning>{ "thread.isRunning", AnyThread, Quick, Nothing, none, { Live(Object::Thread) } },
    Row<&VX3ThreadServices::sleep>{ "thread.sleep", AnyThread, MayBlock, Nothing, none, { count } },
    Row<&VX3ThreadServices::isMainThread>{ "thread.isMainThread", AnyThread, Quick, Nothing, none, {} },
};

inline constexpr std::tuple message = {
    Row<&VX3MessageServices::postCore>{ "message.postCore", AnyThread, Quick, Memory, none, { any, any, any, any } },
    Row<&VX3MessageServices::showText>{ "message.showText", GuiThread, MayBlock, Nothing, none, { need } },
    Row<&VX3MessageServices::documentChanged>{ "message.documentChanged", GuiThread, Quick, Nothing, none, {} },
};

inline constexpr std::tuple resource = {
    Row<&VX3ResourceServices::load>{ "resource.load", GuiThread, MayBlock, LoadResource, Object::Resources, { need } },
    Row<&VX3ResourceServices::free>{ "resource.free", GuiThread, Quick, Nothing, none, { FreesOrNone(Object::Resources) } },
    Row<&VX3ResourceServices::text>{ "resource.text", AnyThread, Quick, Memory, none, { LiveOrNone(Object::Resources), any, outText } },
    Row<&VX3ResourceServices::language>{ "resource.language", AnyThread, Quick, Memory, none, { count, any, any, any } },
    Row<&VX3ResourceServices::keyword>{ "resource.keyword", AnyThread, Quick, Memory, none, { count, need } },
};

inline constexpr std::tuple console = {
    Row<&VX3ConsoleServices::line>{ "console.line", AnyThread, Quick, Nothing, none, { need } },
    Row<&VX3ConsoleServices::criticalStop>{ "console.criticalStop", AnyThread, Quick, Nothing, none, { stopFile, sourceLine } },
    Row<&VX3ConsoleServices::debugStop>{ "console.debugStop", AnyThread, Quick, Nothing, none, { stopFile, sourceLine } },
    Row<&VX3ConsoleServices::internalError>{ "console.internalError", AnyThread, Quick, Nothing, none, { stopText } },
};

inline constexpr std::tuple registry = {
    Row<&VX3RegistryServices::registerCommand>{ "registry.registerCommand", StartEnd, Quick, Register, none, { any, need, any, any, need, any, need } },
    Row<&VX3RegistryServices::registerPrefsPage>{ "registry.registerPrefsPage", StartEnd, Quick, Register, none, { any, need, need, any, any, need } },
    Row<&VX3RegistryServices::registerIcon>{ "registry.registerIcon", StartEnd, Quick, Register, none, { any, picture } },
    Row<&VX3RegistryServices::publish>{ "registry.publish", StartEnd, Quick, Publish, none, { any, any, count, need } },
    Row<&VX3RegistryServices::withdraw>{ "registry.withdraw", StartEnd, Quick, Nothing, none, { any } },
    Row<&VX3RegistryServices::find>{ "registry.find", AnyThread, Quick, Nothing, none, { any, any, count } },
    Row<&VX3RegistryServices::preferences>{ "registry.preferences", GuiThread, Quick, Register, none, { any } },
    Row<&VX3RegistryServices::registerMenu>{ "registry.registerMenu", StartEnd, Quick, Register, none, { any, need } },
};

inline constexpr std::tuple run = {
    Row<&VX3RunServices::runMode>{ "run.runMode", AnyThread, Quick, Nothing, none, {} },
    Row<&VX3RunServices::edition>{ "run.edition", AnyThread, Quick, Nothing, none, { Of(Choice::Question), any } },
    Row<&VX3RunServices::folder>{ "run.folder", AnyThread, Quick, Memory, none, { Of(Choice::FolderNumber), outPath } },
    Row<&VX3RunServices::place>{ "run.place", AnyThread, Quick, Memory, none, { Of(Choice::PlaceNumber), outPath } },
    Row<&VX3RunServices::environment>{ "run.environment", AnyThread, Quick, Memory, none, { need, outText } },
    Row<&VX3RunServices::clock>{ "run.clock", AnyThread, Quick, Nothing, none, {} },
    Row<&VX3RunServices::currentDate>{ "run.currentDate", AnyThread, Quick, Nothing, none, { need } },
};
// clang-format on

} // namespace rows

} // namespace vx3::testing
