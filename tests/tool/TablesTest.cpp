// Tables of configurations that hold anything whatever.
#include <map>
#include <set>

#include "support/RandomDocuments.h"
#include "support/ReadBack.h"
#include "tool/ToolWorld.h"

namespace {

using RowsByPath = std::map<std::string, TableRow>;

/// Each row by its path, without what follows from the other fields.
RowsByPath byPath(const TableRows& rows) {
    RowsByPath all;
    for (TableRow row : rows) {
        const std::string path = row["path"];
        for (const char* derived : {"path", "name", "index"})
            row.erase(derived);
        std::erase_if(row, [](const auto& field) { return field.second.empty(); });
        EXPECT_TRUE(all.emplace(path, row).second) << "twice: " << path;
    }
    return all;
}

/// The rows of a thing, and of what is in it, as a reader of its own knows them.
void addRows(const readBack::Thing& thing, const std::string& parent, TableRows& rows) {
    static const std::map<char, std::vector<std::string>> columns{
        {'s', {"settings", "port", "EDI type", "time-out"}},
        {'d', {"device", "port", "EDI type", "time-out"}},
        {'b', {"branch"}},
        {'i', {"item", "comment", "address", "data type", "access right", "flag", "elements"}}};
    std::string path = parent;
    if (!path.empty()) path += '.';
    for (const char c : thing.name) {
        const auto special = std::string_view(".\\\n\r\t").find(c);
        path += special == std::string::npos ? std::string(1, c)
                                             : "\\" + std::string(1, ".\\nrt"[special]);
    }
    const auto& names = columns.at(thing.kind);
    TableRow row{{"path", path}, {"name", thing.name}, {"kind", names[0]}};
    for (std::size_t i = 0; i < thing.texts.size(); ++i)
        row[names.at(i + 1)] = thing.texts[i];
    rows.push_back(row);
    for (const auto& each : thing.contents)
        addRows(each, path, rows);
}
TableRows rowsIn(const std::string& file) {
    TableRows rows;
    addRows(readBack::Reader(file).configuration(), "", rows);
    return rows;
}

/// A file of the configuration as it is read back; nothing where that cannot be.
std::string fileOf(EditorWorld& world) {
    for (int i = 0; i < 2; ++i) {
        const std::string file = readBack::latin1(written(readBack::inMemory(world.document), 0));
        try {
            rowsIn(file);
        } catch (const std::runtime_error&) {
            return "";
        }
        world.document.saved = true;
        world.open("/house.xml", file);
    }
    return world.disk.files["/house.xml"];
}

class RandomTables : public ::testing::Test {
 protected:
    /// Calls `test` with one configuration after the other in the file "a.xml", and somewhat or
    /// quite another one in "b.xml"; names the first, should it fail.
    template <typename Test>
    void forEachPair(const Test& test) {
        RandomDocuments user;
        user.oddAddresses = false;  // which a table may not have
        const auto next = [&](std::size_t changes) {
            std::string file;
            while (file.empty()) {
                if (changes == 0 || user.below(5) == 0) user.make();
                for (std::size_t i = changes; i > 0; --i)
                    user.change();
                file = fileOf(user);
            }
            return file;
        };
        for (int number = 1; number <= 150 && !HasFailure(); ++number) {
            ToolWorld world;
            world.disk.writesSpoiledFiles = true;  // types and rights that the server does not know
            world.disk.files["a.xml"] = next(0);
            SCOPED_TRACE("house " + std::to_string(number) + ": " + outline(user.document));
            world.disk.files["b.xml"] = next(1 + user.below(9));
            test(world, byPath(rowsIn(world.disk.files["a.xml"])),
                 byPath(rowsIn(world.disk.files["b.xml"])));
        }
    }

    std::mt19937 random{1};
};

TEST_F(RandomTables, AreImportedByteForByteInAnyOrderAndIntoOthers) {
    forEachPair([&](ToolWorld& world, const RowsByPath& before, const RowsByPath& after) {
        for (const std::string separator : {",", ";", "tab"}) {
            world.must("export a.xml --force -o a.csv --separator " + separator);
            const TableRows rows =
                rowsOf(world.disk.files["a.csv"], separator == "tab" ? '\t' : separator.front());
            EXPECT_EQ(byPath(rows), before);
            world.must("import a.csv --force -o same.xml");
            EXPECT_EQ(world.disk.files["same.xml"], world.disk.files["a.xml"]);
        }
        world.must("export a.xml");
        TableRows rows = rowsOf(world.out);
        EXPECT_EQ(world.out, csvOf(rows, allHeadings));

        std::vector<std::string> headings = allHeadings;
        for (const char* derived : {"kind", "name", "index"})
            std::erase(headings, derived);
        std::ranges::shuffle(rows, random);
        std::ranges::shuffle(headings, random);
        world.disk.files["a.csv"] = csvOf(rows, headings, ';').substr(3);
        world.must("import a.csv --force -o same.xml");
        world.must("diff a.xml same.xml");
        EXPECT_EQ(world.out, "") << world.disk.files["a.csv"];

        auto expected = after;
        for (const auto& [path, row] : before)
            if (expected.emplace(path, row).first->second.at("kind") != row.at("kind")) return;
        // Not where two of these would have one key, which knows no "\".
        std::set<std::string> keys;
        for (const auto& [path, row] : expected) {
            std::string key = upperCase(path);
            std::erase(key, '\\');
            if (!keys.insert(key).second) return;
        }
        world.must("export b.xml -o b.csv");
        world.must("import b.csv --into a.xml -o into.xml");
        EXPECT_EQ(byPath(rowsIn(world.disk.files["into.xml"])), expected);
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
RowsByPath applied(const nlohmann::json& changes, const RowsByPath& rows) {
    std::map<std::string, std::string> to;
    std::set<std::string> removed;
    for (const auto& change : changes) {
        if (change.contains("to")) to[change["path"]] = change["to"];
        if (change["change"] == "removed") removed.insert(std::string(change["path"]));
    }
    RowsByPath changed;
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
    forEachPair([](ToolWorld& world, const RowsByPath& before, const RowsByPath& after) {
        EXPECT_EQ(world.run("diff a.xml b.xml --json"), before == after ? 0 : 1) << world.err;
        EXPECT_EQ(applied(nlohmann::json::parse(world.out), before), after) << world.out;
        EXPECT_EQ(world.run("diff a.xml b.xml"), before == after ? 0 : 1);
    });
}

}  // namespace
