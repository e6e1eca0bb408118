/// \file
/// What the project file is made of (docs/formats/project-file.md). Not installed.
#pragma once

#include <array>

namespace Kv_Designer
{

constexpr std::array<char, 4> ProjectMagic = {'N', 'W', 'P', 'F'};

/// Ids of the project's chunks, in the order in which they are written.
enum ProjectChunk {
    VersionChunk = 1,
    ScriptFilesChunk = 2,
    UiFileChunk = 3,
    DataFileChunk = 4,
    VarFileChunk = 5,
    CmFileChunk = 6,
    MainScriptChunk = 7,
};

/// Version that a file has which does not say any: no file that we accept.
constexpr int NoVersion = 0;

} // namespace Kv_Designer
