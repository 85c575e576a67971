#include "core/Container.h"

#include <gtest/gtest.h>

#include <climits>
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

TEST(ContainerTest, AGrowingVectorWithoutBlockDoublesItsSpaceOnce) {
  vector<int> Table(0, 7, 0);
  Table.at(8) = 1;
  const vector<int>& Constant = Table;
  // Reading without growing shows the storage: 16 elements from 0.
  EXPECT_EQ(Constant.at(15), 0);
  EXPECT_EQ(Caught([&] { Constant.at(16); }).Text(),
            "index out of range (original i:16, i:16, min:0, d:16)");
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
  const vector<int>& Constant = Table;
  EXPECT_EQ(Caught([&] { Constant.at(-6); }).Text(),
            "index out of range (original i:-6, i:-1, min:-5, d:18)")
      << "three blocks of 5 below the old 3 elements";
}

TEST(ContainerTest, AGrowthBeyondTheIntegerRangeFails) {
  vector<char> Table(0, 9, INT_MAX);
  EXPECT_EQ(Caught([&] { Table.at(10); }).Text(), "space+extend>=0");
}

TEST(ContainerTest, AnEmptyGrowingVectorWithoutBlockCannotDouble) {
  vector<int> Table(0, -1, 0);
  EXPECT_EQ(Caught([&] { Table.at(0); }).Text(), "extend>0");
  vector<int> Blocked(0, -1, 4);
  Blocked.at(6) = 1;
  EXPECT_EQ(Blocked.at(6), 1);
}

TEST(ContainerTest, AMatrixChecksBothAxes) {
  matrix<int> Grid(-111, 111, -5, 10);
  EXPECT_EQ(Grid.lowX(), -111);
  EXPECT_EQ(Grid.highX(), 111);
  EXPECT_EQ(Grid.lowY(), -5);
  EXPECT_EQ(Grid.highY(), 10);
  Grid.at(-111, -5) = 1;
  Grid.at(111, 10) = 2;
  EXPECT_EQ(Grid.at(-111, -5), 1);
  EXPECT_EQ(Grid.at(111, 10), 2);
  EXPECT_EQ(Caught([&] { Grid.at(-112, 0); }).Text(),
            "index out of range (original i:-112, i:-1, min:-111, d:223)");
  EXPECT_EQ(Caught([&] { Grid.at(112, 0); }).Text(),
            "index out of range (original i:112, i:223, min:-111, d:223)");
  EXPECT_EQ(Caught([&] { Grid.at(0, -6); }).Text(),
            "index out of range (original i:-6, i:-1, min:-5, d:16)");
  const matrix<int>& Constant = Grid;
  EXPECT_EQ(Constant.at(111, 10), 2);
  EXPECT_EQ(Caught([&] { Constant.at(0, 11); }).Text(),
            "index out of range (original i:11, i:16, min:-5, d:16)");
}

TEST(ContainerTest, EveryMatrixCellIsItsOwn) {
  matrix<int> Grid(-2, 3, 4, 6);
  for (int X = -2; X <= 3; ++X) {
    for (int Y = 4; Y <= 6; ++Y) Grid.at(X, Y) = X * 100 + Y;
  }
  for (int X = -2; X <= 3; ++X) {
    for (int Y = 4; Y <= 6; ++Y) EXPECT_EQ(Grid.at(X, Y), X * 100 + Y) << X << "," << Y;
  }
}

TEST(ContainerTest, AMatrixMayBeEmptyOnOneAxis) {
  matrix<std::string> Grid(0, -1, 0, 4);
  EXPECT_EQ(Grid.highX(), -1);
  EXPECT_EQ(Caught([&] { Grid.at(0, 0); }).Text(),
            "index out of range (original i:0, i:0, min:0, d:0)");
  EXPECT_EQ(Caught([] { matrix<int>(0, 1, 5, 3); }).Text(), "HighY>=LowY-1");
}

}  // namespace
