// Measurements and offsets, in and the stored observation out.
// Leans on importing.
#include "import/importing.h"

namespace clxml::testing {
namespace {

class Measurements : public ImportTest {
 protected:
  // The measurement as it hangs on its observation, once as an element behind it and once below it.
  std::string Attached (int version, const std::string& element) {
    const std::string head =
        "<DATABASE_ObservationRecord rec=\"db_Observation\" ID=\"0x2\"><PointName>P</PointName>"
        "<Method>DBENTITY_Unknown</Method><SurveyMethod>DBENTITY_Fix</SurveyMethod>"
        "<Classification>Normal</Classification><Deleted>false</Deleted>";
    const std::string tail = "</DATABASE_ObservationRecord>";
    const std::string behind = Hung (Stored (version, head + tail + element));
    EXPECT_EQ (Hung (Stored (version, head + element + tail)), behind);
    return behind;
  }

 private:
  static std::string Hung (const std::vector<std::string>& stored) {
    EXPECT_EQ (stored.size (), 1u);
    if (stored.empty ()) return {};
    const std::size_t at = stored[0].find (" <- ");
    return at == std::string::npos ? std::string () : stored[0].substr (at + 4);
  }
};

std::string Element (const std::string& word, const std::string& tags) {
  return "<DATABASE_" + word + "Record rec=\"db_" + word + "\" ID=\"0x3\" TimeStamp=\"8\">" + tags +
         "</DATABASE_" + word + "Record>";
}

TEST_F (Measurements, GoToTheirObservationWithAllTheyHold) {
  const std::string raw =
      "<HorzCircle>1</HorzCircle><VertCircle>2</VertCircle><EDMDistance>3</EDMDistance>"
      "<Face>COORD_Face1</Face><HorzCircleStdErr>4</HorzCircleStdErr>"
      "<VertCircleStdErr>5</VertCircleStdErr><EDMDistanceStdErr>6</EDMDistanceStdErr>";
  const std::string deltas =
      "<ECEFDeltas><dX>1</dX><dY>2</dY><dZ>3</dZ><XDelta>4</XDelta><YDelta>5</YDelta>"
      "<ZDelta>6</ZDelta></ECEFDeltas><Reference>0x2</Reference><Antenna/>";
  const std::string laser =
      "<LaserOffset><Azimuth>1</Azimuth><VertAngle>2</VertAngle><SlopeDist>3</SlopeDist>"
      "<SlopeDistance>4</SlopeDistance></LaserOffset><BasePoint>0x3</BasePoint>"
      "<LaserHeight>0x00</LaserHeight><TargetHeight>0x0000000002</TargetHeight>"
      "<CreatedView>COORDSYS_CogoAzimuthWGS84</CreatedView>";
  const struct {
    const char* name;
    int version;
    std::string element;
    std::string told;
  } cases[] = {
      {"ECEF deltas", 1140, Element ("ECEFDeltas", deltas),
       "db_ECEFDeltas XDelta=1 YDelta=2 ZDelta=3 Reference=#2 Antenna=#0"},
      {"ECEF deltas below 1140", 1139, Element ("ECEFDeltas", deltas),
       "db_ECEFDeltas XDelta=4 YDelta=5 ZDelta=6 Reference=#2 Antenna=#0"},
      {"ECEF", 1140, Element ("ECEF", "<ECEF><X>-1e3</X><Y>2</Y><Z>3</Z></ECEF>"),
       "db_ECEF X=-1000 Y=2 Z=3 Antenna=#0"},
      {"ECEF on the ground", 1140, Element ("ECEFGround", "<ECEFGround><Y>2</Y></ECEFGround>"),
       "db_ECEFGround X=null Y=2 Z=null"},
      {"WGS84", 1140,
       Element ("WGS84",
                "<Note>n</Note><WGS84><Lat>1</Lat><Long>2</Long><Height>3</Height>"
                "</WGS84>"),
       "db_WGS84 (n\r\n) Lat=1 Long=2 Height=3"},
      {"local", 1140, Element ("Local", "<Local><Lat>1</Lat><Long>2</Long></Local>"),
       "db_Local Lat=1 Long=2 Height=null"},
      {"grid without its group", 1140, Element ("Grid", "<North>1</North>"),
       "db_Grid North=null East=null Elev=null"},
      {"polar", 1140,
       Element ("Polar",
                "<SourcePoint>S</SourcePoint><Polar><Azimuth>1</Azimuth>"
                "<HDist>2</HDist><VDist>3</VDist></Polar><CreatedView/>"),
       "db_Polar SourcePoint=S Azimuth=1 HDist=2 VDist=3 CreatedView=0"},
      {"laser offset", 1140, Element ("LaserOffset", laser),
       "db_LaserOffset BasePoint=#2 Azimuth=1 VertAngle=2 SlopeDist=3 LaserHeight=#0 "
       "TargetHeight=#2 MagneticDeclination=#0 CreatedView=1"},
      {"laser offset below 1140", 1130, Element ("LaserOffset", laser),
       "db_LaserOffset BasePoint=#2 Azimuth=1 VertAngle=2 SlopeDist=4 LaserHeight=#0 "
       "TargetHeight=#2 MagneticDeclination=#0 CreatedView=1"},
      {"circle without its group keeps what a new one has", 1140, Element ("Circle", ""),
       "db_Circle HorzCircle=0 VertCircle=0 EDMDistance=0 Face=COORD_FaceNull "
       "HorzCircleStdErr=null VertCircleStdErr=null EDMDistanceStdErr=null "
       "EDMMeasurementMode=TOTAL_EDMFine Station=#0 Target=#0 BackBearing=#0 CreatedView=0"},
      {"circle with its group", 1090,
       Element ("Circle", "<Circle>" + raw + "</Circle><Target>0x2</Target>"),
       "db_Circle HorzCircle=1 VertCircle=2 EDMDistance=3 Face=COORD_Face1 HorzCircleStdErr=4 "
       "VertCircleStdErr=5 EDMDistanceStdErr=6 EDMMeasurementMode=TOTAL_EDMDefault Station=#0 "
       "Target=#2 BackBearing=#0 CreatedView=0"},
      {"azimuth", 1140, Element ("Azimuth", "<SourcePoint>S</SourcePoint><Azimuth>1.25</Azimuth>"),
       "db_Azimuth SourcePoint=S Azimuth=1.25 CreatedView=0"},
      {"mean turned angle", 1140,
       Element ("MeanTurnedAngle",
                "<MTA>" + raw +
                    "<NumberOfHAngles>4294967295</NumberOfHAngles><NumberOfVAngles>2"
                    "</NumberOfVAngles><NumberOfDistances/></MTA><Station>0x3</Station>"),
       "db_MeanTurnedAngle HorzCircle=1 VertCircle=2 EDMDistance=3 HorzCircleStdErr=4 "
       "VertCircleStdErr=5 EDMDistanceStdErr=6 NumberOfHAngles=4294967295 NumberOfVAngles=2 "
       "NumberOfDistances=0 Station=#2 Target=#0 BackBearing=#0 CreatedView=0"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    EXPECT_EQ (Attached (c.version, c.element), c.told);
  }
}

TEST_F (Measurements, WithoutAnObservationAreDroppedWithALogLine) {
  const std::string grid = Element ("Grid", "");
  const std::string line =
      "<DATABASE_LineRecord rec=\"db_Line\" ID=\"0x2\"><LineId>L</LineId>"
      "<Method>DBENTITY_TwoPoints</Method><Deleted>false</Deleted></DATABASE_LineRecord>";
  const std::string told =
      "Import: measurement without an open observation dropped: "
      "DATABASE_GridRecord ID=\"0x3\"";
  EXPECT_TRUE (Stored (1140, grid).empty ());
  EXPECT_EQ (hearing.TakeLog (), std::vector<std::string>{told});
  EXPECT_EQ (Stored (1140, line + grid).size (), 1u);
  EXPECT_EQ (hearing.TakeLog (), std::vector<std::string>{told});
  // Its number is known, but as that of no record.
  const std::string reference =
      "<DATABASE_TraverseClosureRecord rec=\"db_TraverseClosure\" ID=\"0x4\">"
      "<TraversePtr>0x3</TraversePtr><Results>DBENTITY_Closed</Results>"
      "</DATABASE_TraverseClosureRecord>";
  EXPECT_NE (Failure (1140, grid + reference).find ("value=\"0x00000003\""), std::string::npos);
}

TEST_F (Measurements, BelowAnObservationNeedANumberOfTheirOwn) {
  EXPECT_EQ (
      Failure (1140,
               "<DATABASE_ObservationRecord rec=\"db_Observation\" ID=\"0x2\"><PointName>P"
               "</PointName><Method>DBENTITY_Unknown</Method><SurveyMethod>DBENTITY_Fix"
               "</SurveyMethod><Classification>DBENTITY_Normal</Classification>"
               "<DATABASE_GridRecord rec=\"db_Grid\"/></DATABASE_ObservationRecord>"),
      "XML read error: \nInvalid hex number (missing 0x prefix) name=\"ID\" with value=\"\"\n"
      "DATABASE_ObservationRecord ID=\"0x2\"");
}

TEST_F (Measurements, ADistanceOffsetInFrontOfItsPointWaitsForTheMeasurement) {
  const auto offset = [] (const std::string& tags) {
    return "<DATABASE_DistanceOffsetRecord rec=\"db_DistanceOffset\" ID=\"0x9\" TimeStamp=\"8\">" +
           tags + "</DATABASE_DistanceOffsetRecord>";
  };
  const auto told = [] (const std::string& raw, const std::string& offsets) {
    return "db_DistanceOffset RawObservation.HorzCircle=" + raw +
           " RawObservation.VertCircle=" + raw + " RawObservation.EDMDistance=" + raw +
           " RawObservation.Face=COORD_FaceNull RawObservation.HorzCircleStdErr=null "
           "RawObservation.VertCircleStdErr=null RawObservation.EDMDistanceStdErr=null "
           "RawObservation.EDMMeasurementMode=TOTAL_EDM" +
           (raw == "0" ? "Fine" : "Default") + " " + offsets;
  };
  const std::string point =
      "<DATABASE_PointRecord rec=\"db_Point\" ID=\"0x2\"><PointName>P</PointName>"
      "<Method>DBENTITY_Unknown</Method><SurveyMethod>DBENTITY_Fix</SurveyMethod>"
      "<Classification>Normal</Classification><Deleted>false</Deleted></DATABASE_PointRecord>";
  const std::string grid = Element ("Grid", "");
  const std::string end = "<DATABASE_EndEntityRecord rec=\"db_EndEntity\" ID=\"0x5\"/>";
  const std::string newTags =
      "<LeftRightOffset>1</LeftRightOffset><DownUpOffset/>"
      "<DisplayOffsetPerspective>DBCONFIG_OffsetFromTarget"
      "</DisplayOffsetPerspective>";
  const std::string toldNew =
      told ("0",
            "LeftRightOffset.Distance=1 InOutOffset.Distance=0 DownUpOffset.Distance=null "
            "DisplayOffsetPerspective=DBCONFIG_OffsetFromTarget");

  const std::vector<std::string> waited = Stored (1130, offset (newTags) + point + grid + end);
  ASSERT_EQ (waited.size (), 3u);
  EXPECT_NE (waited[0].find (" <- db_Grid"), std::string::npos);
  EXPECT_EQ (waited[1], toldNew);
  EXPECT_EQ (waited[2], "db_EndEntity");

  const std::vector<std::string> inside = Stored (1130, point + offset (newTags) + grid);
  ASSERT_EQ (inside.size (), 2u);
  EXPECT_EQ (inside[1], toldNew);

  // The next one pushes it out, into the job; what waits in vain is told.
  const std::vector<std::string> pushed = Stored (1130, offset (newTags) + offset (""));
  ASSERT_EQ (pushed.size (), 1u);
  EXPECT_EQ (pushed[0], toldNew);
  EXPECT_EQ (hearing.TakeLog (),
             std::vector<std::string>{"Import: distance offset without a measurement dropped"});

  const struct {
    const char* name;
    int version;
    const char* tags;
    std::string told;
  } old[] = {
      {"left", 1120, "<Direction>DBTYPE_Left</Direction><Distance>2</Distance>",
       told ("0",
             "LeftRightOffset.Distance=-2 InOutOffset.Distance=0 DownUpOffset.Distance=0 "
             "DisplayOffsetPerspective=DBCONFIG_OffsetFromInstrument")},
      {"right", 1120, "<Direction>DBTYPE_Right</Direction><Distance>2</Distance>",
       told ("0",
             "LeftRightOffset.Distance=2 InOutOffset.Distance=0 DownUpOffset.Distance=0 "
             "DisplayOffsetPerspective=DBCONFIG_OffsetFromInstrument")},
      {"in, without distance", 1120, "<Direction>DBTYPE_In</Direction>",
       told ("0",
             "LeftRightOffset.Distance=0 InOutOffset.Distance=-0 DownUpOffset.Distance=0 "
             "DisplayOffsetPerspective=DBCONFIG_OffsetFromInstrument")},
      {"out, distance empty", 1120, "<Direction>DBTYPE_Out</Direction><Distance/>",
       told ("0",
             "LeftRightOffset.Distance=0 InOutOffset.Distance=null DownUpOffset.Distance=0 "
             "DisplayOffsetPerspective=DBCONFIG_OffsetFromInstrument")},
      {"any other direction, circle below 1100", 1090,
       "<Direction>DBTYPE_Up</Direction><Distance>2</Distance><Circle><HorzCircle>1</HorzCircle>"
       "<VertCircle>1</VertCircle><EDMDistance>1</EDMDistance><Face>COORD_FaceNull</Face></Circle>",
       told ("1",
             "LeftRightOffset.Distance=0 InOutOffset.Distance=0 DownUpOffset.Distance=0 "
             "DisplayOffsetPerspective=DBCONFIG_OffsetFromInstrument")},
  };
  for (const auto& c : old) {
    SCOPED_TRACE (c.name);
    const std::vector<std::string> stored = Stored (c.version, point + offset (c.tags));
    ASSERT_EQ (stored.size (), 2u);
    EXPECT_EQ (stored[1], c.told);
  }
}

}  // namespace
}  // namespace clxml::testing
