// A configuration as a plain list, with random contents and random changes: what the commands are
// held against.
#pragma once

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "base/Text.h"
#include "tool/ToolWorld.h"

/// A device, branch or item, or without names the settings.
struct Thing {
    std::vector<std::string> names;
    TableRow fields;  ///< those of the kind, and "kind"
    bool operator==(const Thing&) const = default;

    bool isIn(const Thing& other) const {
        return names.size() > other.names.size() &&
               std::equal(other.names.begin(), other.names.end(), names.begin());
    }
    bool is(const std::string& kind) const { return fields.at("kind") == kind; }
};

class RandomHouse {
 public:
    explicit RandomHouse(unsigned seed) : random_(seed) {
        things.push_back({{}, connection("settings")});
        things.push_back({{name("device")}, connection("device")});
        for (std::size_t i = below(25); i > 0; --i)
            add();
    }

    std::vector<Thing> things;

    std::size_t below(std::size_t n) { return random_() % n; }

    /// Renames, moves, removes, adds or changes something; what cannot be is left.
    void change() {
        const std::vector<Thing> before = things;
        const std::size_t choice = below(6);
        if (choice == 0) return add();
        const Thing parent = container();
        Thing& thing = things[below(things.size())];
        if (choice > 3 || thing.names.empty()) {
            const TableRow others = fields(thing.fields["kind"]);
            const auto field = std::next(others.begin(), static_cast<long>(below(others.size())));
            thing.fields[field->first] = field->second;
            fitElements(thing);
        } else if (choice == 1) {
            place(thing, {thing.names.begin(), thing.names.end() - 1}, name(thing.fields["kind"]));
        } else if (choice == 2 && !thing.is("device") && parent != thing && !parent.isIn(thing)) {
            place(thing, parent.names, thing.names.back());
        } else if (choice == 3) {
            std::erase_if(things, [gone = thing](const Thing& each) {
                return each == gone || each.isIn(gone);
            });
        }
        if (!hasKeysOfItsOwn()) things = before;
    }

    /// Names that differ in capitals only are the same for a configuration.
    bool hasKeysOfItsOwn() const {
        std::set<std::string> keys;
        for (const Thing& each : things)
            keys.insert(upperCase(key(each)));
        return keys.size() == things.size();
    }

    TableRows rows() const {
        TableRows all;
        for (const Thing& thing : things) {
            all.push_back(thing.fields);
            all.back()["path"] = pathOf(thing.names);
            all.back()["name"] = thing.names.empty() ? "" : thing.names.back();
        }
        return all;
    }

    static std::string pathOf(const std::vector<std::string>& names) {
        static const std::map<char, std::string> escapes{
            {'.', "\\."}, {'\\', "\\\\"}, {'\n', "\\n"}, {'\r', "\\r"}, {'\t', "\\t"}};
        std::string path;
        for (const std::string& each : names) {
            if (&each != &names.front()) path += '.';
            for (const char c : each)
                path += escapes.contains(c) ? escapes.at(c) : std::string(1, c);
        }
        return path;
    }

 private:
    using Texts = std::vector<const char*>;

    static std::string key(const Thing& thing) {
        std::string joined;
        for (const std::string& each : thing.names)
            joined += each + ".";
        return joined;
    }

    std::string oneOf(const Texts& texts) { return texts[below(texts.size())]; }
    std::string number(std::size_t n) { return std::to_string(below(n)); }

    std::string name(const std::string& kind) {
        static const Texts inBranch{"A", "B", "\u00C4", ".", "-", "1"};
        static const Texts inDevice{"D", "e", ".", "\u00F6", "'", ";", ",", " ", "\\"};
        static const Texts inItem{"a", "B", ".", "\"", ",", ";", "\n", "\t", "\u00FC", "\\", " "};
        const Texts& pieces = kind == "branch" ? inBranch : kind == "device" ? inDevice : inItem;
        std::string text = kind == "branch" ? "F" : "";
        for (std::size_t i = 1 + below(3); i > 0; --i)
            text += oneOf(pieces);
        return text;
    }

    std::string comment() {
        std::string text;
        for (std::size_t i = below(4); i > 0; --i)
            text += oneOf({"Hall", "\"", ",", ";", "\n", "\t", " ", "\u00DF", "=1+1", "''"});
        return text;
    }

    TableRow connection(const std::string& kind) {
        return {{"kind", kind},
                {"port", oneOf({"COM1", "USB", "", "a;b,c", "\u00B5"})},
                {"EDI type", oneOf({"PEI16x9600", "USBEMI1", ""})},
                {"time-out", oneOf({"0", "-7", "1000", "2147483647"})}};
    }

    TableRow fields(const std::string& kind) {
        if (kind == "branch") return {{"kind", kind}};
        if (kind != "item") return connection(kind);
        Thing item{{},
                   {{"kind", kind},
                    {"comment", comment()},
                    {"address", number(2) + "/7/" + number(9)},
                    {"data type", oneOf({"EIS1", "EIS1", "EIS15", "NOEIS", "EIS99", ""})},
                    {"access right", oneOf({"READ", "WRITE", "READWRITE", "other"})},
                    {"flag", oneOf({"READ", "TRANSMIT"})}}};
        fitElements(item);
        return item.fields;
    }

    void fitElements(Thing& thing) {
        const std::string& type = thing.fields["data type"];
        thing.fields.erase("elements");
        if (type == "EIS15" || type == "NOEIS") thing.fields["elements"] = number(15);
        if (type.empty() && !thing.is("item")) thing.fields.erase("data type");
    }

    Thing container() {
        while (true) {
            const Thing& thing = things[below(things.size())];
            if (thing.is("device") || thing.is("branch")) return thing;
            if (std::ranges::none_of(things, [](auto& each) { return each.is("device"); })) {
                things.push_back({{name("device")}, connection("device")});
            }
        }
    }

    void add() {
        const std::string kind = oneOf({"item", "item", "item", "branch", "branch", "device"});
        Thing added{{}, fields(kind)};
        if (kind != "device") added.names = container().names;
        added.names.push_back(name(kind));
        things.push_back(added);
        if (!hasKeysOfItsOwn()) things.pop_back();
    }

    /// Gives it another parent and name; what is in it goes along.
    void place(const Thing& thing, std::vector<std::string> names, const std::string& last) {
        const Thing old = thing;
        names.push_back(last);
        for (Thing& each : things) {
            if (each != old && !each.isIn(old)) continue;
            std::vector<std::string> changed = names;
            changed.insert(changed.end(), each.names.begin() + static_cast<long>(old.names.size()),
                           each.names.end());
            each.names = changed;
        }
    }

    std::mt19937 random_;
};
