// Tests of feature codes and their attributes.
// How texts become codes, what stays when they change, and what a reader refuses. Leans on
// record_support.
#include "Library/records/dbFeatures.h"

#include <gtest/gtest.h>

#include "Library/records/record_support.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

using Texts = std::vector<std::string>;

// The codes of an array as "code|suffix".
Texts Codes (const FeatureArray& features) {
  Texts codes;
  for (int i = 0; i < features.Count (); i++)
    codes.push_back (std::string (features.At (i).Code.Data ()) + "|" +
                     features.At (i).Suffix.Data ());
  return codes;
}

Bytes BytesOf (const FeatureArray& features) {
  OutBuffer out (ENDIAN_Little);
  features.Save (out);
  return Bytes (out.Data (), out.Data () + out.Length ());
}

TEST (Features, TextsBecomeCodes) {
  const std::string full (DBTYPE_CodeSize, 'x');
  const struct {
    std::string text;
    Texts whole;
    Texts split;
  } cases[] = {
      {"", {}, {}},
      {"FENCE12", {"FENCE12|"}, {"FENCE|12"}},
      {"12", {"12|"}, {"12|"}},
      {"A1B22 C", {"A1B22|", "C|"}, {"A1B|22", "C|"}},
      {"TREE   KERB ", {"TREE|", "KERB|"}, {"TREE|", "KERB|"}},
      {" TREE", {}, {}},
      {"AB-", {"AB|"}, {"AB|"}},
      {"A-B", {"A-B|"}, {"A-B|"}},
      {"A -", {"A|"}, {"A|"}},
      {"A- B", {"A-|", "B|"}, {"A-|", "B|"}},
      {"-", {}, {}},
      {std::string ("A\0B", 3), {"A|"}, {"A|"}},
      {full, {full + "|"}, {full + "|"}},
      {full + "x", {}, {}},
      {"P1\xC2\xB7"
       "2",
       {"P1\xC2\xB7"
        "2|"},
       {"P|1\xC2\xB7"
        "2"}},
      {"P\xB7"
       "2",
       {"P\xB7"
        "2|"},
       {"P\xB7|2"}},
  };
  for (const auto& one : cases) {
    FeatureArray features;
    features.Append (Feature ());
    features.Parse (one.text, false);
    EXPECT_EQ (Codes (features), one.whole) << one.text;
    features.Parse (one.text, true);
    EXPECT_EQ (Codes (features), one.split) << one.text;
  }
}

TEST (Features, NextCodeTakesFromTheFront) {
  std::string_view text = "AB  C-";
  Str code ("before");
  EXPECT_TRUE (NextCode (text, code));
  EXPECT_EQ (code, "AB");
  EXPECT_EQ (text, "C-");
  EXPECT_TRUE (NextCode (text, code));
  EXPECT_EQ (text, "-");
  EXPECT_FALSE (NextCode (text, code));
  EXPECT_EQ (code, "C");
  EXPECT_EQ (text, "-");
}

TEST (Features, ACodeIsSplitAtItsFirstBlank) {
  Str code, suffix;
  SplitCode ("FENCE A 12", code, suffix);
  EXPECT_EQ (code, "FENCE");
  EXPECT_EQ (suffix, "A 12");
  SplitCode (" 7", code, suffix);
  EXPECT_EQ (code, "7");
  EXPECT_EQ (suffix, "");
}

TEST (Features, MergingKeepsAttributesOfCodesThatStay) {
  FeatureArray features;
  features.Parse ("FENCE GATE FENCE", false);
  features.At (0).AddText ("owner", "first");
  features.At (1).AddNumber ("height", 1.5);
  features.At (2).AddText ("owner", "second");
  features.MergeFrom ("fence TREE7 fence", true);
  EXPECT_EQ (Codes (features), (Texts{"fence|", "TREE|7", "fence|"}));
  EXPECT_EQ (features.At (0).At (0).Text, "first");
  EXPECT_EQ (features.At (1).Count (), 0);
  EXPECT_EQ (features.At (2).At (0).Text, "first");
  EXPECT_EQ (features.ToString (), "fence TREE7 fence");
  EXPECT_EQ (features.CountWithAttributes (), 2);
  features.ClearSuffixes ();
  features.ClearAttributes ();
  EXPECT_FALSE (features.HasAttributes ());
  EXPECT_EQ (features.ToString (), "fence TREE fence");
}

TEST (Features, StoredForm) {
  FeatureArray features;
  EXPECT_EQ (BytesOf (features), Hex ("00000000"));
  EXPECT_EQ (features.ToString (), "");
  features.Parse ("A", false);
  EXPECT_EQ (BytesOf (features), Hex ("01000000 00 'A' 00 00000000"));
  Feature& feature = features.At (0);
  feature.AddNumber ("n", MATHS_Null);
  feature.AddText ("t", "x");
  feature.AddMenu ("m", 258, "y");
  feature.AddDate ("d", 1.0);
  feature.AddTime ("c", 1.0);
  feature.AddFile ("f", "z");
  feature.AddSeparator ("s");
  EXPECT_EQ (BytesOf (features),
             Hex ("01000000 00 'A' 00 07000000"
                  "0000 'n' 00 A0C8EB85F3CCE17F  0100 't' 00 'x' 00  0200 'm' 00 0201 'y' 00"
                  "0300 'd' 00 000000000000F03F  0400 'c' 00 000000000000F03F"
                  "0500 'f' 00 'z' 00  0600 's' 00"));
}

TEST (Features, PlacesInTheArray) {
  Hearing hearing;
  FeatureArray features;
  EXPECT_EQ (features.Find ("A", 99), -1);
  features.Parse ("A B A", false);
  EXPECT_EQ (features.Find ("A", 0), 0);
  EXPECT_EQ (features.Find ("A", 1), 2);
  EXPECT_EQ (features.Find ("a", 0), -1);
  EXPECT_TRUE (hearing.TakeAssertions ().empty ());
  EXPECT_EQ (features.Find ("A", 3), -1);
  EXPECT_EQ (features.Find ("A", -1), -1);
  EXPECT_EQ (hearing.TakeAssertions (), (Texts{"startAt < NumFeatures", "startAt >= 0"}));
  Feature inserted;
  inserted.Code = "I";
  features.InsertAt (inserted, 3);
  features.InsertAt (inserted, 5);
  features.InsertAt (inserted, -1);
  EXPECT_EQ (hearing.TakeAssertions (), (Texts{"addAtNdx >= 0 && addAtNdx <= NumFeatures",
                                               "addAtNdx >= 0 && addAtNdx <= NumFeatures"}));
  features.Remove (&features.At (0));
  features.Remove (&inserted);
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"found"});
  EXPECT_EQ (Codes (features), (Texts{"B|", "A|", "I|"}));
  EXPECT_TRUE (features.At (3).Code.IsEmpty ());
  EXPECT_TRUE (features.At (-1).Code.IsEmpty ());
  EXPECT_EQ (features.At (0).At (0).Type, ATTRIBUTE_Separator);
  EXPECT_EQ (hearing.TakeAssertions (),
             (Texts{"pos < NumFeatures", "pos >= 0", "pos < this->NumAttribs"}));
  Attribute attribute;
  EXPECT_FALSE (features.At (0).Get (0, attribute));
  const FeatureArray taken = features.Take ();
  EXPECT_EQ (taken.Count (), 3);
  EXPECT_EQ (features.Count (), 0);
  EXPECT_TRUE (features.IsDifferent (taken));
  features.Assign (taken);
  EXPECT_TRUE (features.IsEqual (taken));
  EXPECT_FALSE (features.IsSameStorage (taken));
}

TEST (Features, MarksAreNeitherStoredNorCompared) {
  FeatureArray features;
  features.Parse ("A", false);
  Attribute marked;
  marked.Mark.fill (7);
  features.At (0).Add (marked);
  FeatureArray other = features;
  other.ClearMarks ();
  EXPECT_EQ (other.At (0).At (0).Mark[7], 0);
  EXPECT_TRUE (other.IsEqual (features));
  EXPECT_EQ (BytesOf (other), BytesOf (features));
}

TEST (Features, AReaderRefusesCountsThatCannotBe) {
  Hearing hearing;
  const auto load = [&] (const Bytes& bytes) {
    FeatureArray features;
    int offset = 0;
    return features.Load (BufferOf (bytes), offset);
  };
  FeatureArray most;
  for (int i = 0; i < DBTYPE_MaxFeatures - 1; i++) most.Append (Feature ());
  EXPECT_TRUE (load (BytesOf (most)));
  EXPECT_TRUE (hearing.TakeAssertions ().empty ());
  most.Append (Feature ());
  EXPECT_FALSE (load (BytesOf (most)));
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"NumFeatures < 100"});
  EXPECT_FALSE (load (Hex ("FFFFFFFF 00 'A' 00 00000000")));
  EXPECT_FALSE (load (Hex ("02000000 00 'A' 00 00000000")));
  EXPECT_TRUE (hearing.TakeAssertions ().empty ());
  for (const char* count : {"01000000", "FFFFFFFF", "FFFFFF7F"}) {
    EXPECT_FALSE (load (Hex (std::string ("01000000 00 'A' 00") + count + "0600")));
    EXPECT_EQ (hearing.TakeAssertions (), Texts{"AttribCountCheck == this->NumAttribs"});
  }
}

}  // namespace
}  // namespace clxml::testing
