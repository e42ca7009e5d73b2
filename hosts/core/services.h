// The sections of the core host's table, one function each. Every section is a
// constant table of plain functions over process-wide state, which CoreHost sets up.
#pragma once

#include "vx3/host.h"

namespace vx3::core {

const VX3MemoryServices* MemoryServices();
const VX3TextServices* TextServices();
const VX3PathServices* PathServices();
const VX3ContainerServices* ContainerServices();
const VX3DataFileServices* DataFileServices();
const VX3FileServices* FileServices();
const VX3CompressorServices* CompressorServices();
const VX3FolderServices* FolderServices();
const VX3BitmapServices* BitmapServices();
const VX3ClassifyServices* ClassifyServices();
const VX3LockServices* LockServices();
const VX3ThreadServices* ThreadServices();
const VX3MessageServices* MessageServices();
const VX3ResourceServices* ResourceServices();
const VX3ConsoleServices* ConsoleServices();
const VX3RegistryServices* RegistryServices();
const VX3RunServices* RunServices();

} // namespace vx3::core
