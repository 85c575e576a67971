#include "core/Container.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/core/Caught.h"

namespace {

TEST(ContainerTest, AFixedVectorHoldsItsBoundsAndNoMore) {
  vector<int> Table(100, 200);
  EXPECT_EQ(Table.low(), 100);
  EXPECT_EQ(Table.high(), 200);
  Table.at(100) = 1;
  Table.at(200) = 2;
  EXPECT_EQ(Table.at(100), 1);
  EXPECT_EQ(Table.at(200), 2);
  EXPECT_EQ(Caught([&] { Table.at(99); }).Text(),
            "index out of range (original i:99, i:-1, min:100, d:101)");
  EXPECT_EQ(Caught([&] { Table.at(201); }).Text(),
            "index out of range (original i:201, i:101, min:100, d:101)");
  const vector<int>& Constant = Table;
  EXPECT_EQ(Constant.at(200), 2);
  EXPECT_EQ(Caught([&] { Constant.at(-5); }).Text(),
            "index out of range (original i:-5, i:-105, min:100, d:101)");
}

TEST(ContainerTest, NewElementsAreCleared) {
  vector<int> Table(-111, 111);
  EXPECT_EQ(Table.at(-111), 0);
  EXPECT_EQ(Table.at(0), 0);
}

TEST(ContainerTest, AnEmptyVectorHasHighBelowLow) {
  vector<std::string> Table(1, 0);
  EXPECT_EQ(Table.high(), 0);
  EXPECT_EQ(Caught([&] { Table.at(1); }).Text(),
            "index out of range (original i:1, i:0, min:1, d:0)");
  EXPECT_EQ(Caught([] { vector<int>(100, 50); }).Text(), "High>=Low-1");
}

TEST(ContainerTest, AGrowingVectorDoublesAndKeepsItsContentsAtTheHighEnd) {
  vector<int> Table(0, 7, 0);
  for (int I = 0; I <= 7; ++I) Table.at(I) = I + 1;
  Table.at(8) = 9;
  EXPECT_EQ(Table.high(), 8);
  for (int I = 0; I <= 8; ++I) EXPECT_EQ(Table.at(I), I + 1);
  EXPECT_EQ(Table.at(15), 0);  // within the 16 of one doubling
  EXPECT_EQ(Table.high(), 15);
}

TEST(ContainerTest, AGrowingVectorExtendsAtTheLowEndByItsBlock) {
  vector<int> Table(10, 12, 5);
  Table.at(10) = 1;
  Table.at(12) = 3;
  Table.at(-3) = 7;
  EXPECT_EQ(Table.low(), -3);
  EXPECT_EQ(Table.at(-3), 7);
  EXPECT_EQ(Table.at(10), 1);
  EXPECT_EQ(Table.at(12), 3);
  EXPECT_EQ(Table.at(0), 0);
}

TEST(ContainerTest, AnEmptyGrowingVectorWithoutBlockCannotDouble) {
  vector<int> Table(0, -1, 0);
  EXPECT_EQ(Caught([&] { Table.at(0); }).Text(), "extend>0");
  vector<int> Blocked(0, -1, 4);
  Blocked.at(6) = 1;
  EXPECT_EQ(Blocked.at(6), 1);
}

}  // namespace
