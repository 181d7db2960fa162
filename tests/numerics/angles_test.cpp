#include "numerics/angles.h"

#include <cmath>
#include <gtest/gtest.h>

#include "support/scripted_dialogs.h"

namespace orv {
namespace {

class AnglesTest : public ::testing::Test {
 protected:
  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};

  bool Silent() const { return dialogs.log.empty() && dialogs.boxes.empty(); }
};

TEST_F(AnglesTest, AcosAnswersWithinItsRange) {
  EXPECT_EQ(Acos(1, prompt), 0);
  EXPECT_EQ(Acos(-1, prompt), 4 * std::atan(1.0));
  EXPECT_NEAR(Acos(0, prompt), kPi / 2, 1e-15);
  EXPECT_NEAR(Acos(0.5, prompt), kPi / 3, 1e-15);
  EXPECT_NEAR(Acos(-0.5, prompt), 2 * kPi / 3, 1e-15);
  EXPECT_NEAR(Acos(std::nextafter(1, 0), prompt), 0, 2e-8);
  EXPECT_TRUE(Silent());
}

TEST_F(AnglesTest, AcosTakesALittleMoreThanOneSilently) {
  EXPECT_EQ(Acos(1 + 3e-16, prompt), 0);
  EXPECT_EQ(Acos(-1 - 3e-16, prompt), 4 * std::atan(1.0));
  EXPECT_TRUE(Silent());
}

TEST_F(AnglesTest, AcosLogsTheNextStep) {
  EXPECT_EQ(Acos(1 + 5e-16, prompt), 0);
  ASSERT_EQ(dialogs.log.size(), 1U);
  EXPECT_EQ(dialogs.log[0], "_Acos arrondi faute Abs(cc) - 1# < 400E-18      -444.1E-18");
  EXPECT_EQ(Acos(-1 - 5e-16, prompt), 4 * std::atan(1.0));
  EXPECT_EQ(dialogs.log.size(), 2U);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(AnglesTest, AcosBeyondOneIsRoundedAndFarBeyondTold) {
  EXPECT_EQ(Acos(1.05, prompt), 0);
  EXPECT_EQ(Acos(-1.05, prompt), 4 * std::atan(1.0));
  EXPECT_TRUE(Silent());
  EXPECT_EQ(Acos(1.2, prompt), 0);
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.log.at(0), "Acosfaute Acos d'un cos > 1 ? -> arrondi à 1 1.2");
  EXPECT_EQ(Acos(-1.2, prompt), 4 * std::atan(1.0));
  EXPECT_EQ(dialogs.boxes.size(), 2U);
}

TEST_F(AnglesTest, AcosPlainIsClampedAtItsEnds) {
  EXPECT_EQ(AcosPlain(1), 0);
  EXPECT_EQ(AcosPlain(7), 0);
  EXPECT_EQ(AcosPlain(-1), std::atan(1.0) * 4);
  EXPECT_EQ(AcosPlain(-7), std::atan(1.0) * 4);
  EXPECT_NEAR(AcosPlain(0.5), kPi / 3, 1e-15);
  EXPECT_NEAR(AcosPlain(-0.5), 2 * kPi / 3, 1e-15);
}

TEST_F(AnglesTest, Atn2CoversTheWholeTurn) {
  EXPECT_EQ(Atn2(0, 0, prompt), kPi15 / 2);
  EXPECT_EQ(Atn2(0, 2, prompt), kPi15 / 2);
  EXPECT_EQ(Atn2(0, -2, prompt), 3 * kPi15 / 2);
  EXPECT_EQ(Atn2(-1, 0, prompt), kPi15);
  EXPECT_EQ(Atn2(1, 0, prompt), 0);
  EXPECT_NEAR(Atn2(1, -1, prompt), 7 * kPi / 4, 1e-13);
  EXPECT_NEAR(Atn2(1, 1, prompt), kPi / 4, 1e-13);
  EXPECT_NEAR(Atn2(-1, 1, prompt), 3 * kPi / 4, 1e-13);
  EXPECT_NEAR(Atn2(-1, -1, prompt), 5 * kPi / 4, 1e-13);
  EXPECT_TRUE(Silent());
}

TEST_F(AnglesTest, Atn2GoesOnAfterAFailure) {
  EXPECT_EQ(Atn2(1e-300, 1e300, prompt), 0);
  EXPECT_EQ(dialogs.log.at(0), "Atn2faute");
  EXPECT_EQ(Atn2(-1e-300, 1e300, prompt), -kPi15 + 2 * kPi15);
}

TEST_F(AnglesTest, AtanPosIsNeverNegative) {
  EXPECT_EQ(AtanPos(0), 0);
  EXPECT_NEAR(AtanPos(1), kPi / 4, 1e-13);
  EXPECT_NEAR(AtanPos(-1), 7 * kPi / 4, 1e-13);
}

TEST_F(AnglesTest, Atan2SingleIsSinglePrecision) {
  EXPECT_EQ(Atan2Single(0, 0), 0.0F);
  EXPECT_EQ(Atan2Single(-1, 0), 3.1415927F);
  EXPECT_EQ(Atan2Single(1, 0), 0.0F);
  EXPECT_FLOAT_EQ(Atan2Single(0, 1), 1.5707964F);
  EXPECT_FLOAT_EQ(Atan2Single(0, -1), -1.5707964F);
  EXPECT_FLOAT_EQ(Atan2Single(1, -1), -0.78539816F);
  EXPECT_FLOAT_EQ(Atan2Single(-1, 1), 2.3561945F);
  EXPECT_FLOAT_EQ(Atan2Single(-1, -1), -2.3561945F);
  // Arguments are rounded to single precision first.
  EXPECT_EQ(Atan2Single(-1, 1e-60), 3.1415927F);
}

TEST_F(AnglesTest, DegReducesToOneTurn) {
  EXPECT_NEAR(Deg(-kPi / 2, prompt), 270, 1e-11);
  EXPECT_NEAR(Deg(kPi, prompt), 180, 1e-11);
  EXPECT_EQ(Deg(1e-16, prompt), 0);
  EXPECT_EQ(Deg(-4.45e-16, prompt), 0);
  for (const double turn : {2 * kPi, 2 * kPi15, 4 * kPi, -2 * kPi15}) {
    const double degrees = Deg(turn, prompt);
    EXPECT_GE(degrees, 0) << turn;
    EXPECT_LT(degrees, 1e-9) << turn;
  }
  EXPECT_NEAR(Deg(10 * kPi + 0.5, prompt), RadToDeg(0.5), 1e-10);
  EXPECT_NEAR(Deg(-10 * kPi + 0.5, prompt), RadToDeg(0.5), 1e-10);
  EXPECT_NEAR(Deg(1.75 * kPi, prompt), 315, 1e-11);
  EXPECT_TRUE(Silent());
}

TEST_F(AnglesTest, DegTellsAnOverflow) {
  Deg(1e308, prompt);
  ASSERT_FALSE(dialogs.log.empty());
  EXPECT_EQ(dialogs.log[0], "1E+308degfaute");
}

TEST_F(AnglesTest, ConversionsUseTheShortPi) {
  EXPECT_EQ(RadToDeg(1), 1 / 3.14159265358979 * 180);
  EXPECT_EQ(DegToRad(90), 90 * 3.14159265358979 / 180);
}

TEST_F(AnglesTest, ClampAndTies) {
  EXPECT_EQ(Clamp(5, 0, 3), 3);
  EXPECT_EQ(Clamp(-5, 0, 3), 0);
  EXPECT_EQ(Clamp(2, 0, 3), 2);
  EXPECT_EQ(Clamp(2, 4, 3), 4);
  EXPECT_EQ(MaxOf(1, 2), 2);
  EXPECT_EQ(MaxOf(2, 1), 2);
  EXPECT_EQ(MinOf(1, 2), 1);
  EXPECT_EQ(MinOf(2, 1), 1);
  EXPECT_TRUE(std::signbit(MaxOf(0.0, -0.0)));
  EXPECT_TRUE(std::signbit(MinOf(0.0, -0.0)));
  EXPECT_FALSE(std::signbit(MaxOf(-0.0, 0.0)));
  EXPECT_FALSE(std::signbit(MinOf(-0.0, 0.0)));
}

}  // namespace
}  // namespace orv
