// The tables of the enumerations and the converters that walk them.
// Cuts the words and numbers of each declaration into rows while compiling, so that no word is
// written twice. Leans on dbEnum.h, whose tables it switches on, and folder.h.
#include <array>
#include <cstddef>
#include <string>

#include "Library/records/dbField.h"
#include "platform/folder.h"

namespace clxml {
namespace {

// The text of a declaration is "Word = number, Word = number".

template <std::size_t size>
consteval std::size_t CountRows (const char (&text)[size]) {
  std::size_t count = 1;
  for (const char c : text) count += c == ',';
  return count;
}

// The text with a zero byte behind each word, so that a word is a text of its own.
template <std::size_t size>
consteval std::array<char, size> CutWords (const char (&text)[size]) {
  std::array<char, size> words{};
  for (std::size_t i = 0; i < size; i++)
    words[i] = text[i] == ' ' && i + 1 < size && text[i + 1] == '=' ? '\0' : text[i];
  return words;
}

template <std::size_t count, std::size_t size>
consteval std::array<Enumerator, count> CutRows (const std::array<char, size>& words) {
  std::array<Enumerator, count> rows{};
  std::size_t i = 0;
  for (Enumerator& row : rows) {
    const std::size_t first = i;
    while (words[i] != '\0') i++;
    row.name = std::string_view (words.data () + first, i - first);
    i += 3;  // "\0= "
    const bool isNegative = words[i] == '-';
    if (isNegative) i++;
    for (; words[i] >= '0' && words[i] <= '9'; i++) row.number = row.number * 10 + words[i] - '0';
    if (isNegative) row.number = -row.number;
    i += 2;  // ", "
  }
  return rows;
}

}  // namespace
}  // namespace clxml

#define DBENUM_TABLES
#include "Library/records/dbEnum.h"

namespace clxml {
namespace {

#define ROW(name) \
  Enumerator { #name, name }
constexpr Enumerator folder_Rows[] = {
    ROW (folder_Unknown),  ROW (folder_Project),  ROW (folder_ROM),         ROW (folder_Locale),
    ROW (folder_Receiver), ROW (folder_Language), ROW (folder_NonStandard), ROW (folder_ThrashData),
    ROW (folder_Temp),     ROW (folder_Export),   ROW (folder_Email),       ROW (folder_EnumSize),
};
#undef ROW
constexpr Enumeration folder_Table = {"folder_Enum", folder_Rows};

void AssertImproper (const Enumeration& table) {
  std::string text = "!\"improper ";
  text += table.name;
  text += '"';
  Assert (false, text.c_str ());
}

// Words come split at the first blank and trimmed.
bool FlagFromWord (const Enumeration& table, std::string_view word, int32_t& flag) {
  Assert (!word.empty (), "string.Length()");
  Assert (!word.starts_with (' '), "string [0] != ' '");
  return EnumFromText (table, word, flag);
}

}  // namespace

template <>
const Enumeration& EnumerationOf<folder_Enum> () {
  return folder_Table;
}

// Views compare their lengths first, so that a row costs a comparison of two numbers unless the
// lengths agree.
bool EnumFromText (const Enumeration& table, std::string_view text, int32_t& number) noexcept {
  for (const Enumerator& row : table.rows) {
    if (row.name == text) {
      number = row.number;
      return true;
    }
  }
  return false;
}

const char* FindEnumText (const Enumeration& table, int32_t number) noexcept {
  for (const Enumerator& row : table.rows)
    if (row.number == number) return row.name.data ();
  return nullptr;
}

const char* EnumToText (const Enumeration& table, int32_t number) {
  if (const char* text = FindEnumText (table, number)) return text;
  AssertImproper (table);
  return "";
}

bool FlagsFromText (const Enumeration& table, std::string_view text, int32_t& number,
                    std::string_view& unknown) {
  int32_t flags = 0;
  for (;;) {
    const std::size_t first = text.find_first_not_of (' ');
    if (first == text.npos) break;
    text.remove_prefix (first);
    const std::string_view word = text.substr (0, text.find (' '));
    text.remove_prefix (word.size ());
    int32_t flag = 0;
    if (!FlagFromWord (table, word, flag)) {
      unknown = word;
      return false;
    }
    flags |= flag;
  }
  number = flags;
  return true;
}

Str FlagsToText (const Enumeration& table, int32_t number) {
  Str text;
  for (const Enumerator& row : table.rows) {
    if ((row.number & number) == 0) continue;
    if (!text.IsEmpty ()) text += ' ';
    text += row.name;
    number &= ~row.number;
  }
  if (number == 0) return text;
  AssertImproper (table);
  return Str ();
}

}  // namespace clxml
