// Buffers: byte order, growth, the two forms of a text, and reads that would leave the data.
// Bytes are compared as written; every violated read is tried at every width. Leans on GoogleTest.
#include "Library/base/buffer.h"

#include <limits>
#include <string>

#include "support/hearing.h"

namespace clxml {
namespace {

using testing::Hearing;
using Bytes = std::vector<uint8_t>;
using Texts = std::vector<std::string>;

Bytes Written (const OutBuffer& out) { return Bytes (out.Data (), out.Data () + out.Length ()); }

Buffer Filled (const Bytes& bytes, ENDIAN endian = ENDIAN_Little) {
  return Buffer (static_cast<int> (bytes.size ()), endian, bytes.data ());
}

void PutOneOfEach (OutBuffer& out) {
  out.PutUInt8 (0x12);
  out.PutInt8 (-2);
  out.PutBool (true);
  out.PutUInt16 (0x1234);
  out.PutInt16 (-2);
  out.PutUInt32 (0x12345678);
  out.PutInt32 (-2);
  out.PutInt64 (0x9ABCDEF0, 0x12345678);
  out.PutFloat (1.5F);
  out.PutDouble (-2.0);
}

TEST (Buffer, LaysOutNumbersInBothOrders) {
  OutBuffer little (ENDIAN_Little), big (ENDIAN_Big);
  PutOneOfEach (little);
  PutOneOfEach (big);
  EXPECT_EQ (Written (little),
             (Bytes{0x12, 0xFE, 1,    0x34, 0x12, 0xFE, 0xFF, 0x78, 0x56, 0x34, 0x12, 0xFE,
                    0xFF, 0xFF, 0xFF, 0xF0, 0xDE, 0xBC, 0x9A, 0x78, 0x56, 0x34, 0x12, 0,
                    0,    0xC0, 0x3F, 0,    0,    0,    0,    0,    0,    0,    0xC0}));
  EXPECT_EQ (Written (big),
             (Bytes{0x12, 0xFE, 1,    0x12, 0x34, 0xFF, 0xFE, 0x12, 0x34, 0x56, 0x78, 0xFF,
                    0xFF, 0xFF, 0xFE, 0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0, 0x3F,
                    0xC0, 0,    0,    0xC0, 0,    0,    0,    0,    0,    0,    0}));
  for (const OutBuffer* out : {&little, &big}) {
    Buffer in (out->Length (), out->Endian (), out->Data ());
    EXPECT_EQ (in.GetUInt8 (), 0x12);
    EXPECT_EQ (static_cast<int8_t> (in.GetUInt8 ()), -2);
    EXPECT_TRUE (in.GetBool ());
    EXPECT_EQ (in.GetUInt16 (), 0x1234);
    EXPECT_EQ (in.GetInt16 (), -2);
    EXPECT_EQ (in.GetUInt32 (), 0x12345678u);
    EXPECT_EQ (in.GetInt32 (), -2);
    EXPECT_EQ (in.GetInt64 (), 0x123456789ABCDEF0);
    EXPECT_EQ (in.GetFloat (), 1.5F);
    EXPECT_EQ (in.GetDouble (), -2.0);
    EXPECT_TRUE (in.AtEnd (in.GetReadPosition ()));
  }
}

TEST (Buffer, ReadsThreeBytesInBothOrders) {
  EXPECT_EQ (Filled ({1, 2, 3}).GetUInt24 (), 0x030201u);
  EXPECT_EQ (Filled ({1, 2, 3}, ENDIAN_Big).GetUInt24 (), 0x010203u);
  EXPECT_EQ (Filled ({0xFF, 0xFF}).GetUInt16 (), 65535);
}

TEST (Buffer, KeepsTheBitsOfSpecialNumbers) {
  OutBuffer out (ENDIAN_Little);
  const double values[] = {-0.0, std::numeric_limits<double>::signaling_NaN (),
                           std::numeric_limits<double>::denorm_min (), 1e308};
  for (const double value : values) out.PutDouble (value);
  Buffer in (out.Length (), ENDIAN_Little, out.Data ());
  for (const double value : values)
    EXPECT_EQ (std::bit_cast<uint64_t> (in.GetDouble ()), std::bit_cast<uint64_t> (value));
}

TEST (OutBuffer, WritesTheTwoFormsOfAText) {
  const struct {
    const char* name;
    void (*put) (OutBuffer&);
    Bytes bytes;
  } cases[] = {
      {"terminated", [] (OutBuffer& o) { o.PutString ("ab"); }, {'a', 'b', 0}},
      {"terminated Str", [] (OutBuffer& o) { o.PutString (Str ("ab")); }, {'a', 'b', 0}},
      {"empty", [] (OutBuffer& o) { o.PutString (""); }, {0}},
      {"null", [] (OutBuffer& o) { o.PutString (static_cast<const char*> (nullptr)); }, {0}},
      {"a zero inside",
       [] (OutBuffer& o) { o.PutString (std::string_view ("a\0b", 3)); },
       {'a', 0}},
      {"padded", [] (OutBuffer& o) { o.PutString ("abc", 5, 0); }, {'a', 'b', 'c', 0, 0}},
      {"padded Str", [] (OutBuffer& o) { o.PutString (Str ("a"), 3, ' '); }, {'a', ' ', ' '}},
      {"cut", [] (OutBuffer& o) { o.PutString ("abcdef", 5, 0); }, {'a', 'b', 'c', 'd', 'e'}},
      {"padding alone", [] (OutBuffer& o) { o.PutString ("", 2, 'x'); }, {'x', 'x'}},
      {"no width", [] (OutBuffer& o) { o.PutString ("abc", 0, 'x'); }, {}},
  };
  for (const auto& each : cases) {
    OutBuffer out (ENDIAN_Undefined);  // texts have no byte order
    each.put (out);
    EXPECT_EQ (Written (out), each.bytes) << each.name;
  }
}

TEST (Buffer, ReadsTheTwoFormsOfAText) {
  const Buffer in = Filled ({'a', 'b', 0, 'c', 'd', 0, 0});
  int at = 0;
  EXPECT_EQ (in.GetString (at, 5).View (), "ab");
  EXPECT_EQ (at, 5);
  EXPECT_TRUE (in.GetString (at).IsEmpty ());
  EXPECT_EQ (at, 6);
  at = 0;
  EXPECT_EQ (in.GetString (at).View (), "ab");
  EXPECT_EQ (at, 3);
  EXPECT_EQ (in.GetString (at, 1).View (), "c");
  EXPECT_EQ (in.GetString (at, 0).View (), "");
  EXPECT_EQ (at, 4);
  uint8_t bytes[2] = {};
  in.GetBytes (nullptr, at, 1);
  in.GetBytes (bytes, at, 2);
  EXPECT_EQ (at, 7);
  EXPECT_EQ (bytes[0] + bytes[1], 0);
}

TEST (Buffer, TakesWhatThereIsOfAnUnterminatedText) {
  Hearing hearing;
  const Buffer in = Filled ({0, 'a', 'b'});
  int at = 1;
  EXPECT_EQ (in.GetString (at).View (), "ab");
  EXPECT_EQ (at, 3);
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"Offset <= _DataLength"});
}

TEST (Buffer, NeverReadsOutsideItsData) {
  const struct {
    int width;
    void (*get) (const Buffer&, int&);
    const char* asserted;
  } reads[] = {
      {1, [] (const Buffer& b, int& at) { EXPECT_EQ (b.GetUInt8 (at), 0); },
       "(Offset + 1) <= _DataLength"},
      {1, [] (const Buffer& b, int& at) { EXPECT_FALSE (b.GetBool (at)); },
       "(Offset + 1) <= _DataLength"},
      {2, [] (const Buffer& b, int& at) { EXPECT_EQ (b.GetUInt16 (at), 0); },
       "(Offset + 2) <= _DataLength"},
      {2, [] (const Buffer& b, int& at) { EXPECT_EQ (b.GetInt16 (at), 0); },
       "(Offset + 2) <= _DataLength"},
      {3, [] (const Buffer& b, int& at) { EXPECT_EQ (b.GetUInt24 (at), 0u); },
       "(Offset + 3) <= _DataLength"},
      {4, [] (const Buffer& b, int& at) { EXPECT_EQ (b.GetUInt32 (at), 0u); },
       "(Offset + 4) <= _DataLength"},
      {4, [] (const Buffer& b, int& at) { EXPECT_EQ (b.GetInt32 (at), 0); },
       "(Offset + 4) <= _DataLength"},
      {8, [] (const Buffer& b, int& at) { EXPECT_EQ (b.GetInt64 (at), 0); },
       "(Offset + 8) <= _DataLength"},
      {4, [] (const Buffer& b, int& at) { EXPECT_EQ (b.GetFloat (at), 0); },
       "(Offset + (int) sizeof (float)) <= _DataLength"},
      {8, [] (const Buffer& b, int& at) { EXPECT_EQ (b.GetDouble (at), 0); },
       "(Offset + (int) sizeof (double)) <= _DataLength"},
      {1, [] (const Buffer& b, int& at) { EXPECT_TRUE (b.GetString (at).IsEmpty ()); },
       "Offset <= _DataLength"},
      {5, [] (const Buffer& b, int& at) { EXPECT_TRUE (b.GetString (at, 5).IsEmpty ()); },
       "Offset + n <= _DataLength"},
      {5, [] (const Buffer& b, int& at) { b.GetBytes (nullptr, at, 5); },
       "Offset + n <= _DataLength"},
      {99, [] (const Buffer& b, int& at) { b.GetBytes (nullptr, at, -1); },
       "Offset + n <= _DataLength"},
      {99, [] (const Buffer& b, int& at) { b.GetBytes (nullptr, at, 2147483647); },
       "Offset + n <= _DataLength"},
  };
  const Bytes bytes (9, 0xFF);
  const Buffer in = Filled (bytes);
  for (const auto& each : reads) {
    Hearing hearing;
    for (const int start : {-1, -2147483647 - 1, 9 - each.width + 1, 9, 2147483647}) {
      int at = start;
      each.get (in, at);
      EXPECT_EQ (at, start);
      EXPECT_EQ (hearing.TakeAssertions (), Texts{each.asserted}) << start;
    }
    int at = 0;
    each.get (Buffer (ENDIAN_Little), at);
    EXPECT_EQ (hearing.TakeAssertions (), (Texts{"_Buffer", each.asserted}));
  }
}

TEST (Buffer, AssertsAByteOrderForNumbers) {
  Hearing hearing;
  const Texts undefined = {"data_Endian != ENDIAN_Undefined"};
  Buffer in = Filled ({1, 2, 3, 4, 0}, ENDIAN_Undefined);
  EXPECT_EQ (in.GetUInt16 (), 0x0201);
  EXPECT_EQ (hearing.TakeAssertions (), undefined);
  in.SetReadPosition (0);
  EXPECT_EQ (in.GetUInt24 (), 0x030201u);
  EXPECT_EQ (hearing.TakeAssertions (), undefined);
  in.GetString ();
  OutBuffer out (ENDIAN_Undefined);
  out.PutBytes ("ab", 2);
  EXPECT_EQ (hearing.TakeAssertions (), Texts{});
  out.PutBool (true);
  EXPECT_EQ (hearing.TakeAssertions (), undefined);
}

TEST (Buffer, IsAValue) {
  Buffer a = Filled ({1, 2, 3});
  a.SetReadPosition (2);
  Buffer b (a);
  EXPECT_EQ (b.GetReadPosition (), 0);
  b.Data ()[0] = 9;
  EXPECT_EQ (a.Data ()[0], 1);
  EXPECT_FALSE (a == b);
  EXPECT_TRUE (Buffer (ENDIAN_Little) == a);
  EXPECT_TRUE (Filled ({1, 2}) == a);  // the left one's length counts
  EXPECT_FALSE (a == Filled ({1, 2}));
  const Buffer& alias = a;
  a = alias;
  EXPECT_EQ (a.Length (), 3);
  EXPECT_EQ (a.GetReadPosition (), 2);
  const Buffer c (std::move (a));
  EXPECT_EQ (c.Length (), 3);
  EXPECT_EQ (a.Length (), 0);
  EXPECT_TRUE (a.AtEnd (0));
  b = a;
  EXPECT_EQ (b.Length (), 0);
}

TEST (Buffer, HoldsWhatItIsResizedTo) {
  Buffer in = Filled ({1, 2, 3});
  in.SetReadPosition (2);
  in.Resize (2);
  EXPECT_EQ (in.Length (), 2);
  EXPECT_EQ (in.GetReadPosition (), 0);
  in.Resize (1000);
  in.Data ()[999] = 7;
  in.Limit (4000);
  EXPECT_EQ (in.Length (), 1000);
  in.Limit (-1);
  EXPECT_EQ (in.Length (), 0);
  Hearing hearing;
  in.Resize (0);
  in.Resize (-5);
  EXPECT_EQ (in.Length (), 0);
  EXPECT_EQ (hearing.TakeAssertions (), Texts (2, "n > 0"));
}

TEST (OutBuffer, GrowsByEight) {
  OutBuffer out (ENDIAN_Little);
  EXPECT_EQ (out.AllocatedLength (), 0);
  Bytes expected;
  const auto fillTo = [&] (int length) {
    while (out.Length () < length) {
      expected.push_back (static_cast<uint8_t> (out.Length () * 7));
      out.PutUInt8 (expected.back ());
    }
  };
  for (const auto& [length, capacity] :
       {std::pair{1, 256}, {256, 256}, {257, 2048}, {2048, 2048}, {2049, 16384}, {16385, 131072}}) {
    fillTo (length);
    EXPECT_EQ (out.AllocatedLength (), capacity) << length;
  }
  EXPECT_EQ (Written (out), expected);
  // Copies compute their own capacity; a reset keeps it.
  out.Shorten (10);
  EXPECT_EQ (OutBuffer (out).AllocatedLength (), 256);
  EXPECT_EQ (Written (OutBuffer (out)), Bytes (expected.begin (), expected.begin () + 10));
  out.Reset ();
  out.PutUInt8 (5);
  EXPECT_EQ (Written (out), Bytes{5});
  EXPECT_EQ (out.AllocatedLength (), 131072);
  EXPECT_EQ (OutBuffer (257, ENDIAN_Little).AllocatedLength (), 2048);
  EXPECT_EQ (OutBuffer (257, ENDIAN_Little).Length (), 0);
}

TEST (OutBuffer, AppendsItself) {
  OutBuffer out (ENDIAN_Little);
  out.PutString ("abc", 3, 0);
  for (int i = 0; i < 8; i++) out.Append (out);
  ASSERT_EQ (out.Length (), 768);
  for (int i = 0; i < 768; i++) ASSERT_EQ (out.Data ()[i], "abc"[i % 3]) << i;
  OutBuffer empty (ENDIAN_Little);
  out.Append (empty);
  EXPECT_EQ (out.Length (), 768);
  out = empty;
  EXPECT_EQ (out.Length (), 0);
  EXPECT_EQ (out.AllocatedLength (), 0);
}

TEST (OutBuffer, OverwritesOnlyWhatIsWritten) {
  Hearing hearing;
  OutBuffer out (ENDIAN_Big);
  out.PutUInt8At (1, 0);
  EXPECT_EQ (hearing.TakeAssertions (), (Texts{"_Buffer", "place < _DataLength"}));
  out.PutString ("", 6, 'x');
  out.PutUInt8At (1, 0);
  out.PutUInt32At (0x02030405, 2);
  EXPECT_EQ (Written (out), (Bytes{1, 'x', 2, 3, 4, 5}));
  EXPECT_EQ (hearing.TakeAssertions (), Texts{});
  out.PutUInt8At (9, 6);
  out.PutUInt8At (9, -1);
  out.PutUInt32At (9, 3);
  out.PutUInt32At (9, -1);
  EXPECT_EQ (hearing.TakeAssertions (),
             (Texts{"place < _DataLength", "place < _DataLength", "place + 4 <= _DataLength",
                    "place + 4 <= _DataLength"}));
  EXPECT_EQ (Written (out), (Bytes{1, 'x', 2, 3, 4, 5}));
}

TEST (OutBuffer, RefusesWhatNoFileHolds) {
  Hearing hearing;
  OutBuffer out (ENDIAN_Little);
  out.PutUInt8 (1);
  EXPECT_THROW (out.PutString ("x", 2147483647, 0), Str);
  EXPECT_EQ (Written (out), Bytes{1});
  out.PutBytes ("x", -1);
  out.PutString ("x", -1, 0);
  EXPECT_EQ (OutBuffer (0, ENDIAN_Little).AllocatedLength (), 0);
  EXPECT_EQ (hearing.TakeAssertions (), Texts (3, "n > 0"));
  EXPECT_EQ (Written (out), Bytes{1});
}

TEST (Buffer, HandsOutTheBytesOfAText) {
  int length = -1;
  const auto bytes = CopyOfBytes (Str ("abc"), length);
  EXPECT_EQ (std::string (bytes.get (), bytes.get () + length), "abc");
  EXPECT_NE (CopyOfBytes (Str (), length), nullptr);
  EXPECT_EQ (length, 0);
}

}  // namespace
}  // namespace clxml
