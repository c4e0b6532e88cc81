#include <nlohmann/json.hpp>

#include "tool/RandomHouse.h"

namespace {

/// Each row by its path, without what follows from the other fields.
std::map<std::string, TableRow> byPath(const TableRows& rows) {
    std::map<std::string, TableRow> all;
    for (TableRow row : rows) {
        const std::string path = row["path"];
        for (const char* derived : {"path", "name", "index"})
            row.erase(derived);
        std::erase_if(row, [](const auto& field) { return field.second.empty(); });
        EXPECT_TRUE(all.emplace(path, row).second) << "twice: " << path;
    }
    return all;
}

std::string describe(const TableRows& rows) { return csvOf(rows, allHeadings); }

class RandomTables : public ::testing::Test {
 protected:
    static constexpr unsigned housesEach = 40;

    /// Calls `test` with one house after the other, from whose table "a.xml" is made; names the one
    /// that failed.
    template <typename Test>
    void forEachHouse(const Test& test) {
        for (unsigned seed = 0; seed < housesEach && !HasFailure(); ++seed) {
            SCOPED_TRACE("house " + std::to_string(seed));
            RandomHouse house(seed);
            ToolWorld world;
            world.disk.writesSpoiledFiles = true;  // types and rights that the server does not know
            world.disk.files["a.csv"] = describe(house.rows());
            world.must("import a.csv -o a.xml");
            test(house, world);
        }
    }
};

TEST_F(RandomTables, AnExportedConfigurationIsImportedByteForByte) {
    forEachHouse([](RandomHouse& house, ToolWorld& world) {
        for (const std::string separator : {",", ";", "tab"}) {
            world.must("export a.xml --force -o b.csv --separator " + separator);
            const TableRows rows =
                rowsOf(world.disk.files["b.csv"], separator == "tab" ? '\t' : separator.front());
            EXPECT_EQ(byPath(rows), byPath(house.rows()));
            world.must("import b.csv --force -o b.xml");
            EXPECT_EQ(world.disk.files["b.xml"], world.disk.files["a.xml"]);
        }
        world.must("export a.xml");
        EXPECT_EQ(world.out, describe(rowsOf(world.out)));
        world.must("diff a.xml b.xml");
        EXPECT_EQ(world.out, "");
    });
}

TEST_F(RandomTables, RowsAndColumnsComeInAnyOrder) {
    forEachHouse([](RandomHouse& house, ToolWorld& world) {
        TableRows rows = house.rows();
        std::vector<std::string> headings = allHeadings;
        for (const char* derived : {"kind", "name", "index"})
            std::erase(headings, derived);
        std::mt19937 random(1);
        std::shuffle(rows.begin(), rows.end(), random);
        std::shuffle(headings.begin(), headings.end(), random);
        world.disk.files["b.csv"] = csvOf(rows, headings, ';').substr(3);
        world.must("import b.csv -o b.xml");
        world.must("diff a.xml b.xml");
        EXPECT_EQ(world.out, "") << world.disk.files["b.csv"];
    });
}

/// A path's parent, up to its last "." that no "\" stands before.
std::string parentOf(const std::string& path) {
    for (std::size_t i = path.size(); i-- > 0;) {
        if (path[i] != '.') continue;
        std::size_t backslashes = 0;
        while (backslashes < i && path[i - 1 - backslashes] == '\\')
            ++backslashes;
        if (backslashes % 2 == 0) return path.substr(0, i);
    }
    return "";
}

/// What the changes, read one after the other, make of the rows.
std::map<std::string, TableRow> applied(const nlohmann::json& changes,
                                        const std::map<std::string, TableRow>& rows) {
    std::map<std::string, std::string> to;
    std::set<std::string> removed;
    for (const auto& change : changes) {
        if (change.contains("to")) to[change["path"]] = change["to"];
        if (change["change"] == "removed") removed.insert(std::string(change["path"]));
    }
    std::map<std::string, TableRow> changed;
    // A path comes before the paths in it, as it is their beginning.
    for (const auto& [path, row] : rows) {
        if (removed.contains(path)) continue;
        const std::string parent = parentOf(path);
        const std::string known = parent.empty() || !to.contains(parent) ? parent : to[parent];
        const std::string name = parent.empty() ? path : path.substr(parent.size() + 1);
        if (!to.contains(path)) to[path] = known.empty() ? name : known + "." + name;
        EXPECT_TRUE(changed.emplace(to[path], row).second) << to[path];
    }
    for (const auto& change : changes) {
        if (change["change"] != "added" && change["change"] != "changed") continue;
        TableRow& row = changed[change["path"]];
        row["kind"] = change["kind"];
        if (!change.contains("fields")) continue;
        for (const auto& [column, value] : change["fields"].items()) {
            if (value.is_object()) {
                EXPECT_EQ(row[column], value["from"]);
                row[column] = value["to"];
            } else {
                row[column] = value;
            }
            if (row[column].empty()) row.erase(column);
        }
    }
    return changed;
}

TEST_F(RandomTables, WhatDiffNamesMakesTheOneOfTheOther) {
    forEachHouse([](RandomHouse& house, ToolWorld& world) {
        const auto before = byPath(house.rows());
        for (std::size_t i = house.below(9); i > 0; --i)
            house.change();
        const auto after = byPath(house.rows());
        world.disk.files["b.csv"] = describe(house.rows());
        world.must("import b.csv -o b.xml");
        EXPECT_EQ(world.run("diff a.xml b.xml --json"), before == after ? 0 : 1) << world.err;
        EXPECT_EQ(applied(nlohmann::json::parse(world.out), before), after) << world.out;
        EXPECT_EQ(world.run("diff a.xml b.xml"), before == after ? 0 : 1);
    });
}

TEST_F(RandomTables, RowsChangeWhatIsThereAndAddWhatIsMissing) {
    forEachHouse([](RandomHouse& house, ToolWorld& world) {
        const std::vector<Thing> before = house.things;
        for (std::size_t i = house.below(9); i > 0; --i)
            house.change();
        world.disk.files["b.csv"] = describe(house.rows());
        // What was removed, or stands elsewhere now, stays as it was.
        for (const Thing& old : before)
            if (std::ranges::find(house.things, old.names, &Thing::names) == house.things.end())
                house.things.push_back(old);
        if (!house.hasKeysOfItsOwn()) return;
        world.must("import b.csv --into a.xml -o b.xml");
        world.must("export b.xml");
        EXPECT_EQ(byPath(rowsOf(world.out)), byPath(house.rows()));
    });
}

}  // namespace
