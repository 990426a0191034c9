#include "filtertext/filter_meaning.h"

#include <gtest/gtest.h>
#include <string>

#include "said_lines.h"

namespace tessavo {
namespace {

std::string filter(std::string_view rest) {
    return saidOf(std::string("Filter 1: ON ").append(rest));
}

TEST(FilterMeaning, PeaksKeepTheirQ) {
    for (const std::string type : {"PK", "PEQ", "Modal", "pk", "Peq", "MODAL"}) {
        EXPECT_EQ(filter(type + " Fc 100 Hz Gain -3.0 dB Q 2.00"),
                  "band " + type + " 100 -3 2 = peak 100 -3 2");
    }
    EXPECT_EQ(filter("Modal Fc 100 Hz Gain 3.0 dB Q 5.41 T60 target 100 ms"),
              "band Modal 100 3 5.41 = peak 100 3 5.41");
}

TEST(FilterMeaning, ABandwidthInOctavesBecomesAQ) {
    EXPECT_EQ(filter("PK Fc 1000 Hz Gain 3 dB BW Oct 0.5"), "band PK 1000 3 - = peak 1000 3 2.86322");
    EXPECT_EQ(filter("PK Fc 1000 Hz Gain 3 dB bw oct 0.5"), "band PK 1000 3 - = peak 1000 3 2.86322");
    EXPECT_EQ(filter("PK Fc 1000 Hz Gain 3 dB BW 0.5 octaves"), "band PK 1000 3 - = peak 1000 3 2.86322");
    EXPECT_EQ(filter("PK BW Oct 1 Fc 10000 Hz Gain 3 dB"), "band PK 10000 3 - = peak 10000 3 1.04786");
    EXPECT_EQ(filter("PK Fc 1000 Hz Gain 3 dB BW 30 Hz Q 4"), "band PK 1000 3 4 = peak 1000 3 4");
    EXPECT_EQ(filter("PK Fc 1000 Hz Gain 3 dB BW 0.5"),
              "error@41 PK 1000 3 -: the bandwidth is not in octaves");
    EXPECT_EQ(filter("PK Fc 1000 Hz Gain 3 dB BW Oct"), "error@44 PK 1000 3 -: the bandwidth is missing");
    EXPECT_EQ(filter("PK Fc 1000 Hz Gain 3 dB BW Oct half"),
              "error@45 PK 1000 3 -: \"half\" is not a number");
    EXPECT_EQ(filter("PK Fc 1000 Hz Gain 3 dB BW Oct 0"),
              "error@45 PK 1000 3 -: the bandwidth is not above 0");
    EXPECT_EQ(filter("LSC Fc 1000 Hz Gain 3 dB BW Oct 1"),
              "error@46 LSC 1000 3 -: a bandwidth, which only a peak has");
    // Nothing to compute there; it is refused for its frequency.
    EXPECT_EQ(filter("PK Fc 30000 Hz Gain 3 dB BW Oct 1"), "band PK 30000 3 - = peak 30000 3 0.707107");
}

TEST(FilterMeaning, ShelvesAreGivenByTheirCentre) {
    EXPECT_EQ(filter("LSC Fc 100 Hz Gain 6 dB Q 0.5"), "band LSC 100 6 0.5 = low-shelf 100 6 0.5");
    EXPECT_EQ(filter("LSQ Fc 100 Hz Gain 6 dB Q 0.5"), "band LSQ 100 6 0.5 = low-shelf 100 6 0.5");
    EXPECT_EQ(filter("hsc Fc 100 Hz Gain 6 dB Q 0.5"), "band hsc 100 6 0.5 = high-shelf 100 6 0.5");
    EXPECT_EQ(filter("HSQ Fc 100 Hz Gain 6 dB Q 0.5"), "band HSQ 100 6 0.5 = high-shelf 100 6 0.5");
    EXPECT_EQ(filter("LSC 9.6 dB Fc 100 Hz Gain 4 dB"), "band LSC 9.6 dB 100 4 - = low-shelf 100 4 0.630778");
    EXPECT_EQ(filter("HSC 9.6 dB Fc 100 Hz Gain -4 dB"),
              "band HSC 9.6 dB 100 -4 - = high-shelf 100 -4 0.630778");
    EXPECT_EQ(filter("LSC Fc 100 Hz Gain 5 dB"), "band LSC 100 5 - = low-shelf 100 5 0.669426");
    EXPECT_EQ(filter("HSC Fc 100 Hz Gain -3 dB"), "band HSC 100 -3 - = high-shelf 100 -3 0.67032");
}

TEST(FilterMeaning, ACornerMovesToTheCentre) {
    EXPECT_EQ(filter("LS Fc 300 Hz Gain 5 dB"), "band LS 300 5 - = low-shelf 300 5 0.669426");
    EXPECT_EQ(filter("HS Fc 1000 Hz Gain -3 dB"), "band HS 1000 -3 - = high-shelf 1000 -3 0.67032");
    EXPECT_EQ(filter("LS 12dB Fc 2000 Hz Gain -5 dB"),
              "band LS 12dB 2000 -5 - = low-shelf 2309.56 -5 0.707107");
    EXPECT_EQ(filter("HS 12 dB Fc 500 Hz Gain 5 dB"),
              "band HS 12 dB 500 5 - = high-shelf 432.982 5 0.707107");
    EXPECT_EQ(filter("LS 6dB Fc 50 Hz Gain 7.2 dB"), "band LS 6dB 50 7.2 - = low-shelf 75.6781 7.2 0.489452");
    EXPECT_EQ(filter("HS6dB Fc 12000 Hz Gain 10 dB"),
              "band HS6dB 12000 10 - = high-shelf 6748.1 10 0.479981");
    EXPECT_EQ(filter("LS 6dB/oct Fc 50 Hz Gain 7.2 dB"),
              "band LS 6dB/oct 50 7.2 - = low-shelf 75.6781 7.2 0.489452");
    EXPECT_EQ(filter("HS Fc 13000 Hz Gain -7 dB Q 0.71"),
              "band HS 13000 -7 0.71 = high-shelf 10643.9 -7 0.71");
    EXPECT_EQ(filter("LS Fc 100 Hz Gain 6 dB Q 0.5"), "band LS 100 6 0.5 = low-shelf 139.875 6 0.5");
}

TEST(FilterMeaning, SlopesThatNoShelfHasAreRefused) {
    EXPECT_EQ(filter("LS 60dB Fc 100 Hz Gain 20 dB"),
              "unsupported LS 60dB 100 20 -: no shelf of 20 dB has 60 dB per octave");
    EXPECT_EQ(filter("LS 0.001dB Fc 100 Hz Gain 20 dB"),
              "unsupported LS 0.001dB 100 20 -: no shelf of 20 dB has 0.001 dB per octave");
    EXPECT_EQ(filter("HS Fc 100 Hz Gain 20 dB Q 0.00001"),
              "unsupported HS 100 20 1e-05: no shelf of 20 dB has this Q");
    EXPECT_EQ(filter("LS 0dB Fc 100 Hz Gain 2 dB"), "error@17 LS 0dB 100 2 -: the slope is not above 0");
    EXPECT_EQ(filter("LS 6dB Fc 100 Hz Gain 2 dB Q 1"), "error@43 LS 6dB 100 2 1: both a slope and a Q");
    EXPECT_EQ(filter("PK 6dB Fc 100 Hz Gain 2 dB Q 1"),
              "error@17 PK 6dB 100 2 1: a slope, which a peak does not have");
}

TEST(FilterMeaning, PassesAreButterworthWithoutAQ) {
    EXPECT_EQ(filter("LP Fc 8000 Hz"), "crossover LP 8000 - - = low-pass 8000 0 0.707107");
    EXPECT_EQ(filter("hp Fc 30.0 Hz"), "crossover hp 30 - - = high-pass 30 0 0.707107");
    EXPECT_EQ(filter("LPQ Fc 10000 Hz Q 0.400"), "crossover LPQ 10000 - 0.4 = low-pass 10000 0 0.4");
    EXPECT_EQ(filter("HPQ Fc 20 Hz Q 0.5"), "crossover HPQ 20 - 0.5 = high-pass 20 0 0.5");
    EXPECT_EQ(filter("HP Fc 20 Hz Gain 0 dB Q 0.71"), "crossover HP 20 0 0.71 = high-pass 20 0 0.71");
    EXPECT_EQ(filter("LPQ Fc 10000 Hz"), "error@29 LPQ 10000 - -: the Q is missing");
    EXPECT_EQ(filter("HPQ Fc 20 Hz Q"), "error@28 HPQ 20 - -: the Q is missing");
    EXPECT_EQ(filter("LP 12dB Fc 80 Hz"), "crossover LP 12dB 80 - - = low-pass 80 0 0.707107");
    EXPECT_EQ(filter("LP 24dB Fc 80 Hz"),
              "unsupported LP 24dB 80 - -: a filter of 24 dB per octave, whose shape is not told");
    EXPECT_EQ(filter("LP1 Fc 80 Hz"), "unsupported LP1 80 - -: \"LP1\" is no type that is known");
}

TEST(FilterMeaning, TypesThatTheTargetLacksAreNamed) {
    EXPECT_EQ(filter("NO Fc 800 Hz"), "unsupported NO 800 - -: a notch; the target has none");
    EXPECT_EQ(filter("no Fc 800 Hz Q 30"), "unsupported no 800 - 30: a notch; the target has none");
    EXPECT_EQ(filter("AP Fc 900 Hz Q 0.707"), "unsupported AP 900 - 0.707: an all-pass; the target has none");
    EXPECT_EQ(filter("BP Fc 900 Hz Q 0.707"), "unsupported BP 900 - 0.707: a band-pass; the target has none");
    EXPECT_EQ(filter("IIR Order 2 Coefficients 1 0 0 1 0 0"),
              "unsupported IIR - - -: coefficients of a filter; what it does is not told");
    EXPECT_EQ(filter("Wah Fc 900 Hz"), "unsupported Wah 900 - -: \"Wah\" is no type that is known");
    EXPECT_EQ(filter("NO"), "unsupported NO - - -: a notch; the target has none");
    EXPECT_EQ(saidOf("Filter: OFF NO Fc 800 Hz"), "off NO 800 - -: a notch; the target has none");
    EXPECT_EQ(saidOf("Filter: OFF Wah Fc 800 Hz"), "off Wah 800 - -: \"Wah\" is no type that is known");
}

TEST(FilterMeaning, OffKeepsWhatTheFilterMeans) {
    EXPECT_EQ(saidOf("Filter 1: OFF PK Fc 100 Hz Gain -3 dB Q 2"), "off PK 100 -3 2 = peak 100 -3 2");
    EXPECT_EQ(saidOf("Filter 1: OFF HP Fc 100 Hz"), "off HP 100 - - = high-pass 100 0 0.707107");
    EXPECT_EQ(saidOf("Filter 1: OFF PK Fc 100 Hz Q 2"), "error@31 PK 100 - 2: the gain is missing");
    for (const std::string state : {"ON", "OFF", "on", "off", "On", "oFF"}) {
        EXPECT_EQ(saidOf("Filter  3: " + state + " None   "), "empty None - - -") << state;
        EXPECT_EQ(saidOf("Filter  3: " + state + " none"), "empty none - - -") << state;
    }
}

TEST(FilterMeaning, WhatIsMissingIsNamedWithItsPlace) {
    EXPECT_EQ(filter("PK"), "error@16 PK - - -: the frequency is missing");
    EXPECT_EQ(filter("PK Gain 3 dB Q 2"), "error@30 PK - 3 2: the frequency is missing");
    EXPECT_EQ(filter("PK Fc Hz Gain 3 dB Q 2"), "error@20 PK - 3 2: the frequency is missing");
    EXPECT_EQ(filter("PK Fc 100 Hz Q 2"), "error@30 PK 100 - 2: the gain is missing");
    EXPECT_EQ(filter("PK Fc 100 Hz Gain dB Q 2"), "error@32 PK 100 - 2: the gain is missing");
    EXPECT_EQ(filter("PK Fc 100 Hz Gain 3 dB"), "error@36 PK 100 3 -: the Q is missing");
    EXPECT_EQ(filter("PK Fc 100 Hz Gain 3 dB   # Q 2"), "error@36 PK 100 3 -: the Q is missing");
    EXPECT_EQ(filter("LS Fc 100 Hz"), "error@26 LS 100 - -: the gain is missing");
    EXPECT_EQ(filter("Fc 100 Hz Gain 3 dB Q 2"), "error@14: the type is missing");
    EXPECT_EQ(saidOf("Filter 1: ON"), "error@13: the type is missing");
    EXPECT_EQ(saidOf("Filter 1:"), "error@10: neither ON nor OFF");
    EXPECT_EQ(saidOf("Filter 1: PK Fc 100 Hz Gain 3 dB Q 2"), "error@11 PK 100 3 2: neither ON nor OFF");
}

TEST(FilterMeaning, WhatIsNoNumberIsQuotedWithItsPlace) {
    for (const std::string wrong :
         {"12k5", "1.2.3", "abc", "nan", "inf", "-inf", "1e999", "0x10", "1e", "--3", "3x", "`f`", "1.5,5"}) {
        EXPECT_EQ(filter("PK Fc " + wrong + " Hz Gain 3 dB Q 2"),
                  "error@20 PK - 3 2: \"" + wrong + "\" is not a number");
        EXPECT_EQ(filter("PK Fc 100 Hz Gain " + wrong + " dB Q 2"),
                  "error@32 PK 100 - 2: \"" + wrong + "\" is not a number");
        EXPECT_EQ(filter("PK Fc 100 Hz Gain 3 dB Q " + wrong),
                  "error@39 PK 100 3 -: \"" + wrong + "\" is not a number");
    }
    EXPECT_EQ(filter("PK Fc 100 Hz Gain 1 000 dB Q 2"), "error@32 PK 100 - 2: \"1 000\" is not a number");
    EXPECT_EQ(filter("PK Fc 1 06 Hz Gain 1 dB Q 2"), "error@20 PK - 1 2: \"1 06\" is not a number");
    EXPECT_EQ(filter("PK Fc x Hz Gain y dB Q z"), "error@20 PK - - -: \"x\" is not a number");
    EXPECT_EQ(filter("PK Q z Gain y dB Fc x Hz"), "error@19 PK - - -: \"z\" is not a number");
}

TEST(FilterMeaning, ValuesThatNoFilterHasAreErrors) {
    EXPECT_EQ(filter("PK Fc 0 Hz Gain 3 dB Q 2"), "error@20 PK 0 3 2: the frequency is not above 0");
    EXPECT_EQ(filter("PK Fc -100 Hz Gain 3 dB Q 2"), "error@20 PK -100 3 2: the frequency is not above 0");
    EXPECT_EQ(filter("PK Fc 100 Hz Gain 3 dB Q 0"), "error@39 PK 100 3 0: the Q is not above 0");
    EXPECT_EQ(filter("PK Fc 100 Hz Gain 3 dB Q -2"), "error@39 PK 100 3 -2: the Q is not above 0");
    EXPECT_EQ(filter("PK Fc 1e300 Hz Gain 3 dB Q 2"),
              "error@20 PK 1e+300 3 2: \"1e300\" is out of every range");
    EXPECT_EQ(filter("PK Fc 100 Hz Gain 1e300 dB Q 2"),
              "error@32 PK 100 1e+300 2: \"1e300\" is out of every range");
    EXPECT_EQ(filter("PK Fc 100 Hz Gain 3 dB Q 1e300"),
              "error@39 PK 100 3 1e+300: \"1e300\" is out of every range");
    EXPECT_EQ(filter("PK Fc 100 Hz Gain 3 dB Q 1e-300"),
              "error@39 PK 100 3 1e-300: \"1e-300\" is out of every range");
}

TEST(FilterMeaning, WhatNobodyUnderstandsIsNotPassedOver) {
    EXPECT_EQ(filter("PK Fc 100 Hz Gain 3 dB Gain 4 dB Q 2"), "error@37 PK 100 3 2: a second gain");
    EXPECT_EQ(filter("PK Fc 100 Hz Gain 3 dB Q 2 Q 2"), "error@41 PK 100 3 2: a second Q");
    EXPECT_EQ(filter("LS Fc 100 Hz Gain 3 dB Slope 6 dB"),
              "error@37 LS 100 3 -: \"Slope 6 dB\" is not understood");
    EXPECT_EQ(filter("PK 4 Fc 100 Hz Gain 3 dB Q 2"), "error@17 PK 100 3 2: \"4\" is not understood");
    EXPECT_EQ(filter("PK Fc 100 Hz Gain 3 dB Q 2 for the bass"), "band PK 100 3 2 = peak 100 3 2");
    EXPECT_EQ(filter("PK Fc 100 Hz (1/60) Gain 3 dB Q 2 # 2nd try"), "band PK 100 3 2 = peak 100 3 2");
}

}  // namespace
}  // namespace tessavo
