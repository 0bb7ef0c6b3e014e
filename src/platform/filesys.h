// Searches in the folders of the device.
// Finds files by folder and mask, and the support files (geoids, grids) that records know by name
// only. Leans on file and folder.
#pragma once

#include <cstdint>

#include "platform/file.h"
#include "platform/folder.h"
#include "str.h"

namespace clxml {

// A folder must be known: folder_Unknown asserts "folder.Type != folder_Unknown". A mask must not
// be empty: that asserts "mask && *mask". The answer is then empty. Directories are listed sorted,
// case folded (A to Z), then by bytes. In the mask of a folder "*" stands for any run of
// characters, "?" for one, without regard to case; "*.*" takes every name, "*." those without
// extension.

/// The first file of the folder that the mask takes; a nameless one when there is none.
file_Class FindFile (const folder_Class& folder, const char* mask);
/// All files of the folder that the mask takes, no directories; folder_ThrashData is not searched.
/// A failing search is reported, and what was found stands.
file_Array FindFiles (const folder_Class& folder, const char* mask);
/// The files of folder_Project, folder_ROM and folder_Locale, in this order, whose names
/// MatchesMask accepts.
file_Array FindFiles (const char* mask);
/// Compares a name, without its directory and written as base name, dot and extension, with a mask,
/// without regard to case; of a mask with a colon only what follows the first one counts. "*"
/// stands for any run of characters, "?" for exactly one. A name without extension ends in the dot:
/// "ab" is taken by "AB.", not by "AB".
bool MatchesMask (const Str& name, const char* mask);
/// The file that a stored name means, with the extension of the mask: the one of that name in
/// folder_Project; else among FindFiles (mask) those of that extension whose base name, without
/// trailing blanks, is the stored name, or else stands anywhere in it (without regard to case); of
/// several the largest that opens and is not empty, of equals the first. Nameless when there is
/// none.
file_Class FindSupportFile (const Str& storedName, const char* mask);
/// Bytes free to the caller on the folder's device; 0 when the system fails, 0xFFFFFFFF for more.
uint32_t FreeSpace (const folder_Class& folder);

}  // namespace clxml
