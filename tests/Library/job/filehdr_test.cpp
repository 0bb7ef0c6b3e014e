// File headers on disk. Leans on filehdr.
#include "Library/job/filehdr.h"

#include "jobfixture.h"
#include "platform/file.h"

namespace clxml::testing {
namespace {

class FileHeaders : public JobTest {
 protected:
  bool ReadFrom (const Bytes& bytes, FileHeader& header) {
    Write ("h", bytes);
    return dbJournal::ReadHeader (folder.Device ("h"), header);
  }
};

TEST_F (FileHeaders, StandOnDiskByteForByte) {
  const struct {
    int32_t type;
    const char* name;
  } kinds[] = {{1, "Norvath Chartwork Logbook Journal"},
               {2, "Norvath Chartwork Logbook Antenna"},
               {3, "Norvath Chartwork Logbook Style"}};
  for (const auto& kind : kinds) {
    const Str path = folder.Device ("h" + std::to_string (kind.type));
    file_Class file;
    ASSERT_TRUE (file.Create (path));
    ASSERT_TRUE (FileHeader (kind.type).Write (file));
    file.Close ();
    Bytes expected (48, 0);
    std::copy_n (kind.name, std::strlen (kind.name), expected.begin ());
    expected[43] = static_cast<uint8_t> (kind.type);
    expected[45] = 12;
    expected[46] = 10;
    expected[47] = 3;
    EXPECT_EQ (Read ("h" + std::to_string (kind.type)), expected);
    FileHeader back (FILEHDR_Journal);
    ASSERT_TRUE (dbJournal::ReadHeader (path, back));
    EXPECT_EQ (back, FileHeader (kind.type));
    EXPECT_EQ (back.Name, kind.name);
    EXPECT_EQ (back.Stamp (), "12.10.3");
  }
}

TEST_F (FileHeaders, WithoutTheMakersNameHaveTheirNumbersInFront) {
  Bytes bytes (48, 9);
  const uint8_t numbers[] = {1, 0, 12, 10, 3};
  std::copy_n (numbers, 5, bytes.begin ());
  FileHeader header (FILEHDR_Style);
  ASSERT_TRUE (ReadFrom (bytes, header));
  EXPECT_EQ (header, FileHeader (FILEHDR_Journal));
  EXPECT_TRUE (header.Name.IsEmpty ());
  // Case counts.
  bytes = Header ();
  bytes[0] = 'n';
  ASSERT_TRUE (ReadFrom (bytes, header));
  EXPECT_EQ (header.FileType, 'n');
}

TEST_F (FileHeaders, EqualByTypeAndVersionOnly) {
  FileHeader a (FILEHDR_Journal), b (FILEHDR_Journal);
  b.Name = "x";
  b.Reserved = 7;
  EXPECT_EQ (a, b);
  for (int32_t FileHeader::*part : {&FileHeader::FileType, &FileHeader::MajorVersion,
                                    &FileHeader::MinorVersion, &FileHeader::Revision}) {
    FileHeader c = a;
    c.*part += 1;
    EXPECT_FALSE (a == c);
  }
}

TEST_F (FileHeaders, RefuseShortFilesAndBadTypes) {
  FileHeader header (FILEHDR_Style);
  EXPECT_FALSE (ReadFrom (Bytes (47, 'N'), header));
  EXPECT_EQ (header, FileHeader (FILEHDR_Style));
  for (const int32_t type : {0, 4, -1}) {
    FileHeader bad (type);
    EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"Bad file type"});
  }
}

}  // namespace
}  // namespace clxml::testing
