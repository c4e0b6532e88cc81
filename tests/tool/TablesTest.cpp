// Tables of random configurations.
#include "support/RandomDocuments.h"
#include "tool/ToolWorld.h"

namespace {

using RowsByPath = std::map<std::string, TableRow>;

/// The rows by path, without fields that are derived from others.
RowsByPath byPath(const TableRows& rows) {
    RowsByPath all;
    for (TableRow row : rows) {
        const std::string path = row["path"];
        for (const char* derived : {"path", "name", "index"})
            row.erase(derived);
        std::erase_if(row, [](const auto& field) { return field.second.empty(); });
        EXPECT_TRUE(all.emplace(path, row).second) << "duplicate path " << path;
    }
    return all;
}

/// Adds the rows of a thing and its contents, from the naive reader.
void addRows(const readBack::Thing& thing, const std::string& parent, TableRows& rows) {
    static const std::map<char, std::vector<std::string>> columns{
        {'s', {"settings", "port", "EDI type", "time-out"}},
        {'d', {"device", "port", "EDI type", "time-out"}},
        {'b', {"branch"}},
        {'i', {"item", "comment", "address", "data type", "flag", "access right", "elements"}}};
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

/// The configuration as a file, after one save and reading; "" if it cannot be read back.
std::string fileOf(EditorWorld& world) {
    for (int i = 0; i < 2; ++i) {
        const std::string file = readBack::latin1(written(readBack::inMemory(world.document)));
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
    /// Calls `test` with random configurations in the files "a.xml" and "b.xml", which differ a
    /// little or completely.
    template <typename Test>
    void forEachPair(const Test& test) {
        RandomDocuments documents;
        documents.oddAddresses = false;  // a table refuses them
        const auto next = [&](std::size_t changes) {
            std::string file;
            while (file.empty()) {
                if (changes == 0 || documents.below(5) == 0) documents.make();
                for (std::size_t i = changes; i > 0; --i)
                    documents.change();
                file = fileOf(documents);
            }
            return file;
        };
        for (int number = 1; number <= 150 && !HasFailure(); ++number) {
            ToolWorld world;
            world.disk.writesSpoiledFiles = true;  // because of unknown types and access rights
            world.disk.files["a.xml"] = next(0);
            SCOPED_TRACE("house " + std::to_string(number) + ": " + outline(documents.document));
            world.disk.files["b.xml"] = next(1 + documents.below(9));
            test(world, byPath(rowsIn(world.disk.files["a.xml"])),
                 byPath(rowsIn(world.disk.files["b.xml"])));
        }
    }

    std::mt19937 random{1};
};

TEST_F(RandomTables, AreImportedByteForByteInAnyOrderAndIntoOtherFiles) {
    forEachPair([&](ToolWorld& world, const RowsByPath& before, const RowsByPath& after) {
        // A name like "TAGS" causes a warning.
        const auto imports = [&](const char* what) { EXPECT_LT(world.run(what), 2) << world.err; };
        for (const std::string separator : {",", ";", "tab"}) {
            world.must("export a.xml --force -o a.csv --separator " + separator);
            const TableRows rows =
                rowsOf(world.disk.files["a.csv"], separator == "tab" ? '\t' : separator.front());
            EXPECT_EQ(byPath(rows), before);
            imports("import a.csv --force -o same.xml");
            expectSameFile(world.disk.files["same.xml"], world.disk.files["a.xml"]);
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
        imports("import a.csv --force -o same.xml");
        world.must("diff a.xml same.xml");
        EXPECT_EQ(world.out, "") << world.disk.files["a.csv"];

        auto expected = after;
        for (const auto& [path, row] : before)
            if (expected.emplace(path, row).first->second.at("kind") != row.at("kind")) return;
        // Skipped if two paths would have the same key, in which there is no "\".
        std::set<std::string> keys;
        for (const auto& [path, row] : expected) {
            std::string key = upperCase(path);
            std::erase(key, '\\');
            if (!keys.insert(key).second) return;
        }
        world.must("export b.xml -o b.csv");
        imports("import b.csv --into a.xml -o into.xml");
        EXPECT_EQ(byPath(rowsIn(world.disk.files["into.xml"])), expected);
    });
}

/// Applies the changes of a diff to the rows.
RowsByPath applied(const nlohmann::json& changes, const RowsByPath& rows) {
    std::map<std::string, std::string> to;
    std::set<std::string> removed;
    std::set<std::pair<std::string, std::string>> ofRemoved;  // addresses and data types of items
    for (const auto& change : changes) {
        if (change.contains("to")) to[change["path"]] = change["to"];
        if (change["change"] != "removed") continue;
        TableRow row = rows.at(*removed.insert(change["path"].get<std::string>()).first);
        ofRemoved.emplace(row["address"], row["data type"]);
    }
    RowsByPath changed;
    // A path sorts before the paths of its contents, which begin with it and a full stop.
    for (const auto& [path, row] : rows) {
        if (removed.contains(path)) continue;
        std::string parent;
        for (const auto& [other, otherRow] : rows)
            if (path.starts_with(other + ".")) parent = other;
        if (!to.contains(path)) to[path] = to[parent] + path.substr(parent.size());
        EXPECT_TRUE(changed.emplace(to[path], row).second) << to[path];
    }
    for (const auto& change : changes) {
        if (change["change"] == "added" && change["kind"] == "item") {
            const auto& fields = change["fields"];
            EXPECT_FALSE(ofRemoved.contains({fields["address"], fields["data type"]})) << change;
        }
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

TEST_F(RandomTables, ApplyingADiffToOneFileYieldsTheOther) {
    forEachPair([](ToolWorld& world, const RowsByPath& before, const RowsByPath& after) {
        EXPECT_EQ(world.run("diff a.xml b.xml --json"), before == after ? 0 : 1) << world.err;
        EXPECT_EQ(applied(nlohmann::json::parse(world.out), before), after) << world.out;
        EXPECT_EQ(world.run("diff a.xml b.xml"), before == after ? 0 : 1);
    });
}

}  // namespace
