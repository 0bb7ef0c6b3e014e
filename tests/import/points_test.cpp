// Elements of geometry and computations, in and the stored records out.
// Leans on importing.
#include "import/importing.h"

namespace clxml::testing {
namespace {

struct Case {
  const char* name;
  int version;
  std::string elements;
  std::vector<std::string> stored;
};

class Points : public ImportTest {
 protected:
  void Check (const std::vector<Case>& cases) {
    for (const Case& c : cases) {
      SCOPED_TRACE (c.name);
      EXPECT_EQ (Stored (c.version, c.elements), c.stored);
    }
  }
};

const std::string pointTags =
    "<PointName>P1</PointName><Derivation>KI</Derivation><Method>DBENTITY_Coordinates</Method>"
    "<SurveyMethod>DBENTITY_KeyedIn</SurveyMethod>";

std::string Point (const std::string& tags, const std::string& more = "") {
  return "<DATABASE_PointRecord rec=\"db_Point\" ID=\"0x2\" TimeStamp=\"7\">" + pointTags + tags +
         more + "</DATABASE_PointRecord>";
}

std::string ToldPoint (const std::string& classification, const std::string& deleted) {
  return "db_Observation Features=[] Description1= Description2= PointName=P1 Derivation=KI "
         "Method=DBENTITY_Coordinates SurveyMethod=DBENTITY_KeyedIn Classification=" +
         classification + " Deleted=" + deleted;
}

TEST_F (Points, ClassAndDeletedMarkComeInTwoForms) {
  const auto legacy = [] (const std::string& word) {
    return Point ("<Classification>DBENTITY_" + word + "</Classification>");
  };
  const auto split = [] (const std::string& word, const std::string& deleted) {
    return Point ("<Classification>" + word + "</Classification><Deleted>" + deleted +
                  "</Deleted>");
  };
  Check ({
      {"deleted check", 1140, legacy ("DeletedCheck"), {ToldPoint ("Check", "1")}},
      {"deleted backsight", 1140, legacy ("DeletedBackSight"), {ToldPoint ("BackSight", "1")}},
      {"deleted as built", 1140, legacy ("DeletedAsBuilt"), {ToldPoint ("Stakeout", "1")}},
      {"deleted construction",
       1140,
       legacy ("DeletedConstruction"),
       {ToldPoint ("Construction", "1")}},
      {"deleted normal", 1140, legacy ("DeletedNormal"), {ToldPoint ("Normal", "1")}},
      {"deleted control", 1140, legacy ("DeletedControl"), {ToldPoint ("Control", "1")}},
      {"as built", 1140, legacy ("AsBuilt"), {ToldPoint ("Stakeout", "0")}},
      {"control", 1140, legacy ("Control"), {ToldPoint ("Control", "0")}},
      {"an empty mark is the older form",
       1140,
       Point ("<Classification>DBENTITY_Normal</Classification><Deleted/>"),
       {ToldPoint ("Normal", "0")}},
      {"split, none", 1140, split ("None", "false"), {ToldPoint ("None", "0")}},
      {"split, MTA", 1140, split ("MTA", "TRUE"), {ToldPoint ("MTA", "1")}},
      {"split, control", 1090, split ("Control", "False"), {ToldPoint ("Control", "0")}},
  });
}

TEST_F (Points, PointsAndObservationsBecomeObservations) {
  Check ({
      {"a point's descriptions are not read",
       1140,
       Point ("<Classification>DBENTITY_Normal</Classification>",
              "<Note>a</Note><Note>b</Note><Descriptions><Description1>d</Description1>"
              "</Descriptions>"),
       {"db_Observation (a\r\nb\r\n)" + ToldPoint ("Normal", "0").substr (14)}},
      {"an observation with descriptions and its measurement below it",
       1140,
       "<DATABASE_ObservationRecord rec=\"db_Observation\" ID=\"0x2\"><PointName>P2</PointName>"
       "<Derivation/><Method>DBENTITY_GpsContOffsetRightPt</Method>"
       "<SurveyMethod>DBENTITY_NetworkFix</SurveyMethod><Classification>Normal</Classification>"
       "<Deleted>false</Deleted><Descriptions><Description2>two</Description2></Descriptions>"
       "<DATABASE_PolarRecord rec=\"db_Polar\" ID=\"0x3\"/>"
       "<DATABASE_GridRecord rec=\"db_Grid\" ID=\"0x4\"><Grid><North>1.5</North><East/></Grid>"
       "</DATABASE_GridRecord></DATABASE_ObservationRecord>",
       {"db_Observation Features=[] Description1= Description2=two PointName=P2 Derivation=   "
        "Method=DBENTITY_GpsContOffsetPt2 SurveyMethod=DBENTITY_NetworkFix Classification=Normal "
        "Deleted=0 <- db_Grid North=1.5 East=null Elev=null"}},
  });
}

TEST_F (Points, LinesAndArcs) {
  const std::string line =
      "<DATABASE_LineRecord rec=\"db_Line\" ID=\"0x2\"><LineId>L1</LineId>"
      "<Derivation>LN</Derivation><Method>DBENTITY_BrngDistLine</Method><Deleted>true</Deleted>"
      "<OriginPoint>A</OriginPoint><TargetPoint>B</TargetPoint>"
      "<BearingLength>10</BearingLength><BearingAzimuth>1</BearingAzimuth>"
      "<BearingGrade>0.1</BearingGrade><Length>20</Length><Azimuth>2</Azimuth><Grade>0.2</Grade>"
      "<Descriptions><Description1>d</Description1></Descriptions></DATABASE_LineRecord>";
  const auto toldLine = [] (const std::string& values) {
    return "db_Line Features=[] Description1=d Description2= LineId=L1 Derivation=LN "
           "Method=DBENTITY_BrngDistLine OriginPoint=A TargetPoint=B " +
           values + " Deleted=1";
  };
  Check ({
      {"line", 1140, line, {toldLine ("BearingAzimuth=1 BearingLength=10 BearingGrade=0.1")}},
      {"line of 1100",
       1100,
       line,
       {toldLine ("BearingAzimuth=1 BearingLength=10 BearingGrade=0.1")}},
      {"line below 1100",
       1099,
       line,
       {toldLine ("BearingAzimuth=2 BearingLength=20 BearingGrade=0.2")}},
      {"arc",
       1140,
       "<DATABASE_ArcRecord rec=\"db_Arc\" ID=\"0x2\"><ArcName>C1</ArcName>"
       "<Derivation>AR</Derivation><Method>DBENTITY_ThreePoints</Method>"
       "<StartPoint>A</StartPoint><EndPoint>B</EndPoint><CenterPoint>C</CenterPoint>"
       "<Direction>DBENTITY_LeftHand</Direction><Radius>1</Radius>"
       "<TangentAtStart>2</TangentAtStart><BackwardTangent>3</BackwardTangent>"
       "<Length>4</Length><ScribedAngle>5</ScribedAngle><Chord>6</Chord><Tangent>7</Tangent>"
       "<Grade/><Classification>DBENTITY_DeletedNormal</Classification></DATABASE_ArcRecord>",
       {"db_Arc Features=[] Description1= Description2= ArcName=C1 Derivation=AR "
        "Method=DBENTITY_ThreePoints StartPoint=A EndPoint=B CenterPoint=C "
        "Direction=DBENTITY_LeftHand Radius=1 TangentAtStart=2 BackwardTangent=3 Length=4 "
        "ScribedAngle=5 Chord=6 Tangent=7 Grade=null Deleted=1"}},
  });
}

TEST_F (Points, InversesInAllTheirForms) {
  const std::string azimuthNulls =
      " Azimuth1=null Azimuth2=null TurnedAngle=null ReferenceLinearEntity= "
      "ReferenceLineDefinedByTwoPoints=false ReferenceLinePoint1Name= ReferenceLinePoint2Name= "
      "Stationing=null Offset=null";
  const auto oldAzimuth = [] (const std::string& method, const std::string& tags) {
    return "<DATABASE_InverseRecord rec=\"db_Inverse\" ID=\"0x2\"><Note>n</Note>"
           "<InverseType>DBENTITY_CogoComputeAzimuth</InverseType><AzimuthMethod>DBENTITY_" +
           method +
           "</AzimuthMethod><Result><CreatedView>COORDSYS_CogoAzimuthGrid "
           "COORDSYS_CogoOrthoHeights COORDSYS_CogoSystemSet</CreatedView></Result>"
           "<ComputedAzimuth>0.5</ComputedAzimuth>"
           "<Entity1>e1</Entity1><Entity2>e2</Entity2><Entity3>e3</Entity3>"
           "<Azimuth1>1</Azimuth1><Azimuth2>2</Azimuth2><Distance1>3</Distance1>"
           "<Distance2>4</Distance2>" +
           tags + "</DATABASE_InverseRecord>";
  };
  const auto oldDistance = [] (const std::string& method) {
    return "<DATABASE_InverseRecord rec=\"db_Inverse\" ID=\"0x2\">"
           "<InverseType>DBENTITY_CogoComputeDistance</InverseType><DistanceMethod>DBENTITY_" +
           method +
           "</DistanceMethod><ComputedDistance>9</ComputedDistance><Entity1>e1</Entity1>"
           "<Entity2>e2</Entity2></DATABASE_InverseRecord>";
  };
  const std::string plain =
      "<DATABASE_InverseRecord rec=\"db_Inverse\" ID=\"0x2\"><Note>n</Note>"
      "<InverseType>DBENTITY_CogoInverse</InverseType><TargetPoint>T</TargetPoint>"
      "<Result><SourcePoint>S</SourcePoint><CreatedView>COORDSYS_CogoDistanceGrid</CreatedView>"
      "<Polar><Azimuth>1</Azimuth><HDist>2</HDist><VDist/></Polar></Result>"
      "<SlopeDistance>3</SlopeDistance></DATABASE_InverseRecord>";
  const std::string noReference =
      " ReferenceLineDefinedByTwoPoints=false ReferenceLinePoint1Name= ReferenceLinePoint2Name= "
      "DistanceAlong=null ComputedDistance=9 CreatedView=0";
  Check ({
      {"inverse",
       1100,
       plain,
       {"db_Inverse (n\r\n) TargetPoint=T Result.SourcePoint=S Result.Azimuth=1 Result.HDist=2 "
        "Result.VDist=null Result.CreatedView=32 SlopeDistance=3 Grade=null"}},
      {"an ordinary inverse below 1100 has its note only",
       1090,
       plain,
       {"db_Inverse (n\r\n) TargetPoint= Result.SourcePoint= Result.Azimuth=null "
        "Result.HDist=null Result.VDist=null Result.CreatedView=0 SlopeDistance=null "
        "Grade=null"}},
      {"from 1100 the type of an inverse means nothing",
       1100,
       "<DATABASE_InverseRecord rec=\"db_Inverse\" ID=\"0x2\">"
       "<InverseType>DBENTITY_CogoComputeAzimuth</InverseType></DATABASE_InverseRecord>",
       {"db_Inverse TargetPoint= Result.SourcePoint= Result.Azimuth=null Result.HDist=null "
        "Result.VDist=null Result.CreatedView=0 SlopeDistance=null Grade=null"}},
      {"old azimuth between two points",
       1090,
       oldAzimuth ("TwoPointAzimuth", ""),
       {"db_ComputeAzimuth (n\r\n) AzimuthMethod=DBENTITY_TwoPointAzimuth Point1=e1 Point2=e2 "
        "CornerPoint=" +
        azimuthNulls + " ComputedAzimuth=0.5 CreatedView=2052"}},
      {"old bisected azimuths",
       1090,
       oldAzimuth ("BisectedAzimuths", ""),
       {"db_ComputeAzimuth (n\r\n) AzimuthMethod=DBENTITY_BisectedAzimuths Point1= Point2= "
        "CornerPoint= Azimuth1=1 Azimuth2=2 TurnedAngle=null ReferenceLinearEntity= "
        "ReferenceLineDefinedByTwoPoints=false ReferenceLinePoint1Name= "
        "ReferenceLinePoint2Name= Stationing=null Offset=null ComputedAzimuth=0.5 "
        "CreatedView=2052"}},
      {"old bisected corner",
       1090,
       oldAzimuth ("BisectedCorner", ""),
       {"db_ComputeAzimuth (n\r\n) AzimuthMethod=DBENTITY_BisectedCorner Point1=e1 Point2=e3 "
        "CornerPoint=e2" +
        azimuthNulls + " ComputedAzimuth=0.5 CreatedView=2052"}},
      {"old azimuth and turned angle",
       1090,
       oldAzimuth ("AzimuthAndTurnedAngle", ""),
       {"db_ComputeAzimuth (n\r\n) AzimuthMethod=DBENTITY_AzimuthAndTurnedAngle Point1= Point2= "
        "CornerPoint= Azimuth1=1 Azimuth2=null TurnedAngle=2 ReferenceLinearEntity= "
        "ReferenceLineDefinedByTwoPoints=false ReferenceLinePoint1Name= "
        "ReferenceLinePoint2Name= Stationing=null Offset=null ComputedAzimuth=0.5 "
        "CreatedView=2052"}},
      {"old azimuth to a line offset",
       1090,
       oldAzimuth ("AzimuthToLineOffset", ""),
       {"db_ComputeAzimuth (n\r\n) AzimuthMethod=DBENTITY_AzimuthToLineOffset Point1= Point2= "
        "CornerPoint= Azimuth1=null Azimuth2=null TurnedAngle=null ReferenceLinearEntity=e1 "
        "ReferenceLineDefinedByTwoPoints=false ReferenceLinePoint1Name= "
        "ReferenceLinePoint2Name= Stationing=3 Offset=4 ComputedAzimuth=0.5 CreatedView=2052"}},
      {"old distance between points",
       1090,
       oldDistance ("TwoPointDistance"),
       {"db_ComputeDistance DistanceMethod=DBENTITY_TwoPointDistance Point1=e1 Point2=e2 "
        "ReferenceLinearEntity=" +
        noReference}},
      {"old distance to an arc",
       1090,
       oldDistance ("BetweenPointAndArc"),
       {"db_ComputeDistance DistanceMethod=DBENTITY_BetweenPointAndArc Point1=e1 Point2= "
        "ReferenceLinearEntity=e2" +
        noReference}},
  });
}

TEST_F (Points, Computations) {
  Check ({
      {"azimuth",
       1140,
       "<DATABASE_ComputeAzimuthRecord rec=\"db_ComputeAzimuth\" ID=\"0x2\">"
       "<AzimuthMethod>DBENTITY_BisectedCorner</AzimuthMethod><Point1>a</Point1>"
       "<Point2>b</Point2><CornerPoint>c</CornerPoint><Azimuth1>1</Azimuth1>"
       "<Azimuth2>2</Azimuth2><TurnedAngle>3</TurnedAngle>"
       "<ReferenceLinearEntity>d</ReferenceLinearEntity>"
       "<ReferenceLineDefinedByTwoPoints>true</ReferenceLineDefinedByTwoPoints>"
       "<ReferenceLinePoint1Name>e</ReferenceLinePoint1Name>"
       "<ReferenceLinePoint2Name>f</ReferenceLinePoint2Name><Stationing>4</Stationing>"
       "<Offset>5</Offset><ComputedAzimuth>6</ComputedAzimuth>"
       "<CreatedView>COORDSYS_CogoAzimuthWGS84</CreatedView></DATABASE_ComputeAzimuthRecord>",
       {"db_ComputeAzimuth AzimuthMethod=DBENTITY_BisectedCorner Point1=a Point2=b CornerPoint=c "
        "Azimuth1=1 Azimuth2=2 TurnedAngle=3 ReferenceLinearEntity=d "
        "ReferenceLineDefinedByTwoPoints=true ReferenceLinePoint1Name=e "
        "ReferenceLinePoint2Name=f Stationing=4 Offset=5 ComputedAzimuth=6 CreatedView=1"}},
      {"distance",
       1140,
       "<DATABASE_ComputeDistanceRecord rec=\"db_ComputeDistance\" ID=\"0x2\">"
       "<DistanceMethod>DBENTITY_BetweenPointAndLine</DistanceMethod><Point1>a</Point1>"
       "<Point2>b</Point2><ReferenceLinearEntity>c</ReferenceLinearEntity>"
       "<ReferenceLinePoint1Name>d</ReferenceLinePoint1Name>"
       "<ReferenceLinePoint2Name>e</ReferenceLinePoint2Name><DistanceAlong>1</DistanceAlong>"
       "<ComputedDistance>2</ComputedDistance></DATABASE_ComputeDistanceRecord>",
       {"db_ComputeDistance DistanceMethod=DBENTITY_BetweenPointAndLine Point1=a Point2=b "
        "ReferenceLinearEntity=c ReferenceLineDefinedByTwoPoints=false "
        "ReferenceLinePoint1Name=d ReferenceLinePoint2Name=e DistanceAlong=1 "
        "ComputedDistance=2 CreatedView=0"}},
      {"keyed-in point with nothing said",
       1140,
       "<DATABASE_PointKeyinRecord rec=\"db_PointKeyin\" ID=\"0x2\"/>",
       {"db_PointKeyin Method=DBENTITY_Unknown PointOne= PointTwo= PointThree= PointFour= "
        "AzimuthOne=null DistanceOne=null AzimuthTwo=null DistanceTwo=null TurnedAngle=null "
        "VOffset=null BearingDistanceAzimuthType=DBENTITY_OriginGrid CreatedView=0 "
        "DirectionAlongLine=DBENTITY_InFromStart VerticalPlaneIntersectionRay.HorzCircle=null "
        "VerticalPlaneIntersectionRay.VertCircle=null "
        "VerticalPlaneIntersectionRay.EDMDistance=null "
        "VerticalPlaneIntersectionRay.Face=COORD_FaceNull "
        "VerticalPlaneIntersectionRay.HorzCircleStdErr=null "
        "VerticalPlaneIntersectionRay.VertCircleStdErr=null "
        "VerticalPlaneIntersectionRay.EDMDistanceStdErr=null "
        "VerticalPlaneIntersectionRay.EDMMeasurementMode=TOTAL_EDMFine"}},
      {"keyed-in point",
       1140,
       "<DATABASE_PointKeyinRecord rec=\"db_PointKeyin\" ID=\"0x2\">"
       "<Method>DBENTITY_DistDistInter</Method><PointOne>a</PointOne><PointTwo>b</PointTwo>"
       "<PointThree>c</PointThree><PointFour>d</PointFour><AzimuthOne>1</AzimuthOne>"
       "<DistanceOne>2</DistanceOne><AzimuthTwo>3</AzimuthTwo><DistanceTwo>4</DistanceTwo>"
       "<TurnedAngle>5</TurnedAngle><VOffset>6</VOffset>"
       "<BearingDistanceAzimuthType>DBENTITY_OriginSun</BearingDistanceAzimuthType>"
       "<DirectionAlongLine>DBENTITY_OutFromEnd</DirectionAlongLine>"
       "<VerticalPlaneIntersectionRay><HorzCircle>7</HorzCircle><VertCircle>8</VertCircle>"
       "<EDMDistance>9</EDMDistance><Face>COORD_Face2</Face>"
       "<HorzCircleStdErr>10</HorzCircleStdErr></VerticalPlaneIntersectionRay>"
       "</DATABASE_PointKeyinRecord>",
       {"db_PointKeyin Method=DBENTITY_DistDistInter PointOne=a PointTwo=b PointThree=c "
        "PointFour=d AzimuthOne=1 DistanceOne=2 AzimuthTwo=3 DistanceTwo=4 TurnedAngle=5 "
        "VOffset=6 BearingDistanceAzimuthType=DBENTITY_OriginSun CreatedView=0 "
        "DirectionAlongLine=DBENTITY_OutFromEnd VerticalPlaneIntersectionRay.HorzCircle=7 "
        "VerticalPlaneIntersectionRay.VertCircle=8 VerticalPlaneIntersectionRay.EDMDistance=9 "
        "VerticalPlaneIntersectionRay.Face=COORD_Face2 "
        "VerticalPlaneIntersectionRay.HorzCircleStdErr=10 "
        "VerticalPlaneIntersectionRay.VertCircleStdErr=null "
        "VerticalPlaneIntersectionRay.EDMDistanceStdErr=null "
        "VerticalPlaneIntersectionRay.EDMMeasurementMode=TOTAL_EDMDefault"}},
      {"an area counts its own list, which ends at another tag",
       1140,
       "<DATABASE_AreaRecord rec=\"db_Area\" ID=\"0x2\"><NumberOfPoints>0xFFFFFFFF</NumberOfPoints>"
       "<Method>COORDSYS_CogoGroundDistances</Method><Area>100</Area><Perimeter>40</Perimeter>"
       "<ListOfPoints><item>a</item><item/><item>c</item><end/><item>d</item></ListOfPoints>"
       "</DATABASE_AreaRecord>",
       {"db_Area NumberOfPoints=3 Method=64 Area=100 Perimeter=40 ListOfPoints=[a;;c]"}},
      {"an area without points",
       1140,
       "<DATABASE_AreaRecord rec=\"db_Area\" ID=\"0x2\"/>",
       {"db_Area NumberOfPoints=0 Method=0 Area=null Perimeter=null ListOfPoints=[]"}},
      {"stationing",
       1140,
       "<DATABASE_StationingRecord rec=\"db_Stationing\" ID=\"0x2\"><Start>1</Start>"
       "<Increment>abc</Increment></DATABASE_StationingRecord>",
       {"db_Stationing Start=1 Increment=0"}},
      {"transformation",
       1140,
       "<DATABASE_CogoTransformationRecord rec=\"db_CogoTransformation\" ID=\"0x2\">"
       "<Rotated>true</Rotated><rotationAngle>1</rotationAngle><rotationOrigin>a</rotationOrigin>"
       "<rotationOriginGrid.North>2</rotationOriginGrid.North>"
       "<rotationOriginGrid.East>3</rotationOriginGrid.East>"
       "<rotationOriginGrid.Elev>4</rotationOriginGrid.Elev><Scaled>FALSE</Scaled>"
       "<scaleFactor>5</scaleFactor><scaleOrigin>b</scaleOrigin>"
       "<scaleOriginGrid.North>6</scaleOriginGrid.North>"
       "<scaleOriginGrid.East>7</scaleOriginGrid.East><Translated>true</Translated>"
       "<translationMethod>DBENTITY_CogoDeltas</translationMethod>"
       "<translation.dNorth>8</translation.dNorth><translation.dEast>9</translation.dEast>"
       "<translation.dElev>10</translation.dElev><translationFrom>c</translationFrom>"
       "<translationTo>d</translationTo><pointsTransformed>-4 points</pointsTransformed>"
       "</DATABASE_CogoTransformationRecord>",
       {"db_CogoTransformation Rotated=true rotationAngle=1 rotationOrigin=a "
        "rotationOriginGrid.North=2 rotationOriginGrid.East=3 rotationOriginGrid.Elev=4 "
        "Scaled=false scaleFactor=5 scaleOrigin=b scaleOriginGrid.North=6 scaleOriginGrid.East=7 "
        "scaleOriginGrid.Elev=null Translated=true translationMethod=DBENTITY_CogoDeltas "
        "translationDelta.dNorth=8 translationDelta.dEast=9 translationDelta.dElev=10 "
        "translationFrom=c translationTo=d pointsTransformed=-4"}},
  });
}

TEST_F (Points, Traverses) {
  Check ({
      {"traverse, its empty stations left out",
       1140,
       "<DATABASE_TraverseHeaderRecord rec=\"db_Traverse\" ID=\"0x2\">"
       "<TraverseName>T</TraverseName><Classification>DBENTITY_Normal</Classification>"
       "<BSPoint>A</BSPoint><BSAzimuth>1</BSAzimuth><BSAzimuthKeyedIn>true</BSAzimuthKeyedIn>"
       "<FSPoint>B</FSPoint><FSAzimuth/><FSAzimuthKeyedIn>false</FSAzimuthKeyedIn>"
       "<ListOfStations><item>S1</item><item/><item>S2</item></ListOfStations>"
       "</DATABASE_TraverseHeaderRecord>",
       {"db_Traverse TraverseName=T Derivation=   Deleted=0 BSPoint=A BSAzimuth=1 "
        "BSAzimuthKeyedIn=1 FSPoint=B FSAzimuth=null FSAzimuthKeyedIn=0 ListOfStations=[S1;S2]"}},
      {"closure and adjustment",
       1140,
       "<DATABASE_TraverseClosureRecord rec=\"db_TraverseClosure\" ID=\"0x2\">"
       "<TraversePtr>0x3</TraversePtr><AzimuthMisclose>1</AzimuthMisclose>"
       "<DistanceMisclose>2</DistanceMisclose><TraverseLength>3</TraverseLength>"
       "<Precision>4</Precision><DeltaNorth>5</DeltaNorth><DeltaEast>6</DeltaEast>"
       "<DeltaElev>7</DeltaElev><Results>DBENTITY_Closed</Results><TraverseLegs>"
       "<Leg><FromPt>a</FromPt><ToPt>b</ToPt><Polar><Azimuth>8</Azimuth></Polar></Leg>"
       "<Leg><FromPt>b</FromPt></Leg><Other/><Leg/></TraverseLegs>"
       "</DATABASE_TraverseClosureRecord>"
       "<DATABASE_TraverseAdjustmentRecord rec=\"db_TraverseAdjustment\" ID=\"0x3\">"
       "<Method>DBENTITY_TransitMethod</Method><Angle>DBENTITY_LinearMethod</Angle>"
       "<Elevation>DBENTITY_NoMethod</Elevation></DATABASE_TraverseAdjustmentRecord>",
       {"db_TraverseClosure TraversePtr=#3 AzimuthMisclose=1 DistanceMisclose=2 TraverseLength=3 "
        "Precision=4 DeltaNorth=5 DeltaEast=6 DeltaElev=7 Results=DBENTITY_Closed "
        "TraverseLegs=[{ FromPt=a ToPt=b Polar.Azimuth=8 Polar.HDist=null Polar.VDist=null}"
        "{ FromPt=b ToPt= Polar.Azimuth=null Polar.HDist=null Polar.VDist=null}]",
        "db_TraverseAdjustment Method=DBENTITY_TransitMethod Angle=DBENTITY_LinearMethod "
        "Elevation=DBENTITY_NoMethod"}},
  });
}

TEST_F (Points, WhatCannotBeReadNamesTagAndElement) {
  const struct {
    const char* name;
    std::string elements;
    std::string text;
  } cases[] = {
      {"no classification", Point (""),
       "Invalid load_legacy_dbentity_Classification name=\"Classification\" with value=\"\""},
      {"legacy word of another time", Point ("<Classification>Normal</Classification>"),
       "Invalid load_legacy_dbentity_Classification name=\"Classification\" with "
       "value=\"Normal\""},
      {"class without name", Point ("<Deleted>true</Deleted>"),
       "Invalid dbentity_Classification name=\"Classification\" with value=\"\""},
      {"legacy word in the new form",
       Point ("<Classification>DBENTITY_Normal</Classification><Deleted>true</Deleted>"),
       "Invalid dbentity_Classification name=\"Classification\" with value=\"DBENTITY_Normal\""},
      {"deleted mark", Point ("<Classification>Normal</Classification><Deleted>yes</Deleted>"),
       "Invalid boolean name=\"Deleted\" with value=\"yes\""},
      {"a word in other case counts with its first occurrence",
       "<DATABASE_PointRecord rec=\"db_Point\" ID=\"0x2\"><Derivation>KI</Derivation>"
       "<Method>dbentity_Unknown</Method><Method>DBENTITY_Unknown</Method></DATABASE_PointRecord>",
       "Invalid dbentity_PointMethod name=\"Method\" with value=\"dbentity_Unknown\""},
      {"derivation",
       "<DATABASE_PointRecord rec=\"db_Point\" ID=\"0x2\"><Derivation>K</Derivation>"
       "</DATABASE_PointRecord>",
       "Derivation code is not 2 characters"},
      {"rec missing", "<DATABASE_StationingRecord ID=\"0x2\"/>", "missing rec=\"db_Stationing\""},
      {"rec wrong", "<DATABASE_StationingRecord rec=\"db_Line\" ID=\"0x2\"/>",
       "wrong rec sttribute: db_Line instead of db_Stationing"},
      {"a bad field is told before a wrong rec",
       "<DATABASE_TraverseAdjustmentRecord rec=\"db_Line\" ID=\"0x2\"/>",
       "Invalid dbentity_TrvAdjustmentMethod name=\"Method\" with value=\"\""},
      {"number without prefix", "<DATABASE_StationingRecord rec=\"db_Stationing\" ID=\"2\"/>",
       "Invalid hex number (missing 0x prefix) name=\"ID\" with value=\"2\""},
      {"number with a wrong digit",
       "<DATABASE_TraverseClosureRecord rec=\"db_TraverseClosure\" ID=\"0x2\">"
       "<TraversePtr>0x1g</TraversePtr></DATABASE_TraverseClosureRecord>",
       "Invalid hex number name=\"TraversePtr\" with value=\"0x1g\""},
      {"flag word",
       "<DATABASE_AreaRecord rec=\"db_Area\" ID=\"0x2\"><Method>COORDSYS_CogoDistanceGrid "
       "nonsense</Method></DATABASE_AreaRecord>",
       "Invalid coordsys_CogoSettings name=\"Method\" with value=\"nonsense\""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    const std::string element = c.elements.substr (1, c.elements.find (' ') - 1);
    const std::string id = c.elements.find ("ID=\"2\"") != std::string::npos ? "2" : "0x2";
    EXPECT_EQ (Failure (1140, c.elements),
               "XML read error: \n" + c.text + "\n" + element + " ID=\"" + id + "\"");
  }
  EXPECT_EQ (Failure (1140, "<DATABASE_StationingRecord rec=\"db_Stationing\"/>"),
             "XML read error: \nInvalid hex number (missing 0x prefix) name=\"ID\" with "
             "value=\"\"\nDATABASE_StationingRecord");
}

TEST_F (Points, ListsThatTheirCountCannotHoldAreRefused) {
  std::string items;
  for (int i = 0; i < 65536; i++) items += "<item/>\n";
  EXPECT_EQ (Failure (1140, "<DATABASE_AreaRecord rec=\"db_Area\" ID=\"0x2\"><ListOfPoints>" +
                                items + "</ListOfPoints></DATABASE_AreaRecord>"),
             "XML read error: \nan area takes at most 65535 points\nDATABASE_AreaRecord "
             "ID=\"0x2\"");
}

}  // namespace
}  // namespace clxml::testing
