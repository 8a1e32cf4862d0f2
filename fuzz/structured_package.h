#pragma once

#include "storage/file_wrapper.h"
#include "structured_archive.h"

namespace tweenery::fuzz {

/// A text of up to `longest` characters: tags that designers type, words of the target languages,
/// characters that end literals and comments, and any others.
QString structuredName(FuzzInput& input, uint32_t longest);

/// A package that is nearly sound: its entries hold structured archives, raw bytes or nothing, are
/// missing, or are directories and links where files are expected.
FileWrapper::Ptr structuredPackage(FuzzInput& input);

}  // namespace tweenery::fuzz
