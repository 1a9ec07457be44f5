#include "Source/Evaluate/VisibleEvaluator.h"

#include "Source/Evaluate/SeededRandom.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace Tessavoy {

namespace {

int shownOf(const VisibleEvaluator& visible, A_long columns, A_long rows) {
    int shown = 0;
    for (A_long row = 0; row < rows; ++row) {
        for (A_long column = 0; column < columns; ++column) {
            shown += visible.test(column, row) ? 1 : 0;
        }
    }
    return shown;
}

}  // namespace

TEST(VisibleEvaluator, ProbabilityOf100ShowsEveryCell) {
    EXPECT_EQ(shownOf({100.0, 3}, 40, 40), 1600);
    EXPECT_EQ(shownOf({150.0, 3}, 40, 40), 1600);
}

TEST(VisibleEvaluator, ProbabilityOf0AndLessShowsNone) {
    EXPECT_EQ(shownOf({0.0, 3}, 30, 30), 0);
    EXPECT_EQ(shownOf({-5.0, 3}, 30, 30), 0);
    EXPECT_EQ(shownOf({std::numeric_limits<double>::quiet_NaN(), 3}, 3, 3), 0);
}

// At 0 a draw of exactly 0 is shown.
TEST(VisibleEvaluator, AnswerIsConstantWhereNoDrawCounts) {
    EXPECT_TRUE((VisibleEvaluator{100.0, 3}.isConstant()));
    EXPECT_TRUE((VisibleEvaluator{-0.5, 3}.isConstant()));
    EXPECT_TRUE((VisibleEvaluator{std::numeric_limits<double>::quiet_NaN(), 3}.isConstant()));
    EXPECT_FALSE((VisibleEvaluator{99.9, 3}.isConstant()));
    EXPECT_FALSE((VisibleEvaluator{0.0, 3}.isConstant()));
}

TEST(VisibleEvaluator, CellIsShownWhereItsDrawIsNotAboveTheProbability) {
    const VisibleEvaluator visible{37.0, 8};
    for (A_long row = 0; row < 20; ++row) {
        for (A_long column = 0; column < 20; ++column) {
            EXPECT_EQ(visible.test(column, row), 37.0 * 0.01 >= seededRandom(8, column, row));
        }
    }
}

TEST(VisibleEvaluator, DrawEqualToTheProbabilityShowsAndOneJustAboveDoesNot) {
    int met = 0;
    for (A_long column = 0; column < 50; ++column) {
        const double draw = seededRandom(8, column, 2);
        // Not every draw is some number's hundredth; most are.
        const double probability = draw * 100;
        if (probability * 0.01 == draw) {
            ++met;
            const double below = std::nextafter(std::nextafter(probability, -1.0), -1.0);
            EXPECT_TRUE((VisibleEvaluator{probability, 8}.test(column, 2)));
            EXPECT_FALSE((VisibleEvaluator{below, 8}.test(column, 2)));
        }
    }
    EXPECT_GT(met, 0);
}

TEST(VisibleEvaluator, ShareOfShownCellsIsTheProbability) {
    // Five standard deviations of 2500 draws.
    EXPECT_NEAR(shownOf({25.0, 1}, 50, 50), 625, 5 * std::sqrt(2500 * 0.25 * 0.75));
}

TEST(VisibleEvaluator, SeedIsTakenAsAWord) {
    const VisibleEvaluator visible{50.0, -1};
    EXPECT_EQ(visible.test(4, 5), 0.5 >= seededRandom(0xFFFFFFFFu, 4, 5));
}

TEST(VisibleEvaluator, BatchesGiveTheAnswersOfSingleCalls) {
    for (const double probability : {-1.0, 0.0, 12.5, 50.0, 99.0, 100.0, 101.0}) {
        const VisibleEvaluator visible{probability, 77};
        for (const int count : {0, 1, 2, 63, 64, 65, 150}) {
            std::vector<A_long> columns(count);
            std::vector<A_long> rows(count);
            for (int k = 0; k < count; ++k) {
                columns[k] = k % 13;
                rows[k] = k / 13;
            }
            std::vector<A_u_char> shown(count + 1, 9);
            visible.test(columns.data(), rows.data(), count, shown.data());
            for (int k = 0; k < count; ++k) {
                EXPECT_EQ(shown[k], visible.test(columns[k], rows[k]) ? 1 : 0);
            }
            EXPECT_EQ(shown[count], 9);
        }
    }
}

}  // namespace Tessavoy
