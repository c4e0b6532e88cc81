// Saves a configuration, reads it back, and compares the result with an independent naive writer
// and reader, which know only the rules of XML (with namespaces) and of the configuration file.
#pragma once

#include "support/EditorWorld.h"

namespace readBack {

/// The settings, a device, a branch or an item: its name, its other texts and its contents.
struct Thing {
    char kind = 's';
    std::string name;
    std::vector<std::string> texts;
    std::vector<Thing> contents;
    const Node* node = nullptr;  ///< only if it was made from a document
};

/// The names of the texts in the file, in its order.
inline const std::vector<std::string> attributesOfDevice{"port", "editype", "timeout"};
inline const std::vector<std::string> fieldsOfItem{"comment", "address",      "eistype",
                                                   "flag",    "accessrights", "elements"};

inline void require(bool is, const char* what) {
    if (!is) throw std::runtime_error(what);
}

/// False for a dropped device without contents.
inline bool isWritten(const Node& node) {
    return node.kind() != NodeKind::plc ||
           std::ranges::any_of(node.GetChildren(), [](auto* child) { return isWritten(*child); });
}
inline Thing thingOf(const Document& document, const Node& node) {
    Thing thing{node.isDevice() ? 'd' : 'b', node.text().string(), {}, {}, &node};
    if (node.kind() == NodeKind::item) {
        const clsItem item = *document.itemAt(node);
        thing.kind = 'i';
        thing.texts = {item.sComment.string(), item.sAddress.string(), item.sDataType.string(),
                       item.bFlag ? "READ" : "TRANSMIT", item.sAccessRight.string()};
        if (std::set<std::string>{"NOEIS", "EIS12", "EIS15"}.contains(thing.texts[2]))
            thing.texts.push_back(std::to_string(item.nElements));
    } else if (node.isDevice()) {
        const clsPLC& device = document.devices().at(node.key());
        thing.texts = {device.getPort(), device.getEdiType(), std::to_string(device.getTimeout())};
    }
    for (const Node* child : node.GetChildren())
        if (isWritten(*child)) thing.contents.push_back(thingOf(document, *child));
    return thing;
}
inline Thing inMemory(const Document& document) {
    const auto& [port, ediType, timeout] = document.settings();
    Thing all{'s', "", {port, ediType, std::to_string(timeout)}, {}, document.tree().root()};
    for (const auto& [key, device] : document.devices())
        for (const ConfigTree* tree : {&document.tree(), &document.detached()})
            for (const Node* child : tree->root()->GetChildren())
                if (child->isDevice() && child->text() == device->getName())
                    all.contents.push_back(thingOf(document, *child));
    return all;
}

/// One byte per character; "?" for those that Latin-1 does not have.
inline std::string latin1(const std::string& utf8) {
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto code = static_cast<unsigned char>(utf8[i]);
        if (code < 0x80) bytes += utf8[i];
        if (code >= 0xC4) bytes += '?';
        if (code == 0xC2 || code == 0xC3) bytes += static_cast<char>(code << 6 | (utf8[++i] & 63));
    }
    return bytes;
}
inline std::string utf8(const std::string& latin1) {
    std::string text;
    for (const char c : latin1) {
        const auto code = static_cast<unsigned char>(c);
        if (code >= 0x80) text += static_cast<char>(0xC0 | code >> 6);
        text += code < 0x80 ? c : static_cast<char>(0x80 | (code & 0x3F));
    }
    return text;
}

inline std::string written(const Thing& thing, std::size_t level = 0) {
    const std::string tabs(level, '\t');
    const auto field = [&](const std::string& tag, const std::string& text) {
        return tabs + "\t<" + tag + ">" + text + "</" + tag + ">\r\n";
    };
    std::string attributes, contents;
    for (std::size_t i = 0; i < thing.texts.size(); ++i) {
        const std::string& text = thing.texts[i];
        if (thing.kind == 'i') contents += field(fieldsOfItem[i], text);
        if (thing.kind != 'i') attributes += " " + attributesOfDevice[i] + "=\"" + text + "\"";
    }
    for (const Thing& each : thing.contents)
        contents += written(each, thing.kind == 'b' ? level + 1 : level + 2);
    if (thing.kind == 's')
        return "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n<QUONEibCfg>\r\n\t<SETTINGS" +
               attributes + "/>\r\n\t<OPC_DA>\r\n" + contents + "\t</OPC_DA>\r\n</QUONEibCfg>\r\n";
    if (thing.kind == 'd')
        return tabs + "<DEVICE name=\"" + thing.name + "\"" + attributes + ">\r\n" + tabs +
               "\t<tags>\r\n" + contents + tabs + "\t</tags>\r\n" + tabs + "</DEVICE>\r\n";
    if (thing.kind == 'i') contents = field("name", thing.name) + contents;
    const std::string tag = thing.kind == 'i' ? "tag" : thing.name;
    return tabs + "<" + tag + ">\r\n" + contents + tabs + "</" + tag + ">\r\n";
}

inline std::string inUpperCase(std::string latin1) {
    for (char& c : latin1) {
        const auto code = static_cast<unsigned char>(c);
        if ((c >= 'a' && c <= 'z') || (code >= 0xE0 && code <= 0xFE && code != 0xF7))
            c = static_cast<char>(code - 0x20);
    }
    return latin1;
}

struct Element {
    std::string name, text;
    std::map<std::string, std::string> attributes;
    std::vector<Element> children;
};

class Reader {
 public:
    explicit Reader(std::string_view latin1) {
        for (std::size_t i = 0; i < latin1.size(); ++i) {
            if (latin1[i] == '\r' && latin1.substr(i + 1).starts_with("\n")) continue;
            bytes_ += latin1[i] == '\r' ? '\n' : latin1[i];
            const auto code = static_cast<unsigned char>(bytes_.back());
            require(code >= 0x20 || code == '\t' || code == '\n', "a control character");
        }
        rest_ = bytes_;
    }
    Thing configuration() {
        const auto end = rest_.find("?>");
        require(rest_.starts_with("<?xml") && end != std::string_view::npos, "no declaration");
        rest_.remove_prefix(end + 2);
        skipBlanks();
        const Element root = element();
        skipBlanks();
        require(rest_.empty() && root.children.size() == 2, "not one root with two children");
        Thing all = withAttributes(root.children[0], 's');
        for (const Element& each : root.children[1].children) {
            Thing device = withAttributes(each, 'd');
            require(each.children.size() == 1 && !device.name.empty(), "an invalid device");
            addKey('d', device.name);
            device.contents = contentsOf(each.children[0], device.name);
            all.contents.push_back(device);
        }
        return all;
    }

 private:
    static bool isIn(std::string_view characters, char c) {
        return characters.find(c) != std::string_view::npos;
    }
    static bool beginsName(char c) {
        const auto code = static_cast<unsigned char>(c);
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
               (code >= 0xC0 && code != 0xD7 && code != 0xF7);
    }
    void skipBlanks() {
        while (!rest_.empty() && isIn(" \t\n", rest_.front()))
            rest_.remove_prefix(1);
    }
    void expect(std::string_view what) {
        require(rest_.starts_with(what), "unexpected text");
        rest_.remove_prefix(what.size());
    }
    std::string name() {
        std::size_t end = 0;
        while (end < rest_.size() &&
               (beginsName(rest_[end]) || (end > 0 && isIn("-.0123456789\xB7", rest_[end]))))
            ++end;
        require(end > 0, "no name");
        const std::string name(rest_.substr(0, end));
        rest_.remove_prefix(end);
        return name;
    }
    Element element() {
        Element element;
        expect("<");
        element.name = name();
        while (!rest_.starts_with(">") && !rest_.starts_with("/>")) {
            require(isIn(" \t\n", rest_.front()), "no white space before an attribute");
            skipBlanks();
            const std::string attribute = name();
            expect("=\"");
            std::string value(rest_.substr(0, rest_.find('"')));
            rest_.remove_prefix(value.size());
            expect("\"");
            for (char& c : value) {
                require(!isIn("<&", c), "an invalid attribute");
                if (isIn("\t\n", c)) c = ' ';
            }
            require(element.attributes.emplace(attribute, value).second, "a duplicate attribute");
        }
        if (rest_.starts_with("/>")) return expect("/>"), element;
        expect(">");
        while (!rest_.starts_with("</")) {
            const std::string text(rest_.substr(0, rest_.find('<')));
            require(text.find('&') == std::string::npos && text.find("]]>") == std::string::npos,
                    "an invalid text");
            element.text += text;
            rest_.remove_prefix(text.size());
            if (!rest_.starts_with("</")) element.children.push_back(this->element());
        }
        expect("</");
        require(name() == element.name, "a mismatched end tag");
        expect(">");
        require(element.children.empty() ||
                    element.text.find_first_not_of(" \t\n") == std::string::npos,
                "text between elements");
        return element;
    }

    static Thing withAttributes(const Element& element, char kind) {
        Thing thing{kind, "", {}, {}};
        require(element.attributes.size() == (kind == 'd' ? 4 : 3), "unexpected attributes");
        for (const std::string& name : attributesOfDevice)
            thing.texts.push_back(utf8(element.attributes.at(name)));
        if (kind == 'd') thing.name = utf8(element.attributes.at("name"));
        return thing;
    }
    /// Keys of one kind must differ in more than case, and keys of different kinds in any way.
    void addKey(char kind, const std::string& key) {
        require(key != "config" && keys_.insert(key).second, "a duplicate key");
        require(keys_.insert(kind + ("\n" + utf8(inUpperCase(latin1(key))))).second,
                "keys that differ only in case");
    }
    std::vector<Thing> contentsOf(const Element& element, const std::string& key) {
        std::vector<Thing> contents;
        require(element.text.find_first_not_of(" \t\n") == std::string::npos, "text in a branch");
        for (const Element& each : element.children) {
            Thing thing{'b', utf8(inUpperCase(each.name)), {}, {}};
            if (thing.name == "TAG") {
                thing.kind = 'i';
                require(each.children.size() >= 6 && each.children.size() <= 7, "not all fields");
                for (std::size_t i = 0; const Element& field : each.children) {
                    const std::string name = i == 0 ? "name" : fieldsOfItem[i - 1];
                    require(field.name == name && field.children.empty(), "an unexpected field");
                    if (i++ > 0) thing.texts.push_back(utf8(field.text));
                }
                thing.name = utf8(each.children[0].text);
            }
            addKey(thing.kind, key + "." + thing.name);
            if (thing.kind == 'b') thing.contents = contentsOf(each, key + "." + thing.name);
            contents.push_back(thing);
        }
        return contents;
    }

    std::string bytes_;
    std::string_view rest_;
    std::set<std::string> keys_;
};

class Check {
 public:
    /// A save must ask or be refused exactly if the naive reader cannot read the configuration
    /// back, and exactly if a visible node has a sign of that kind. Otherwise the file must be read
    /// back equal, or differ only where a visible node has a sign.
    void operator()(EditorWorld& world) {
        const Document& document = world.document;
        const Thing before = inMemory(document);
        const std::string bytes = latin1(written(before));
        bool isReadable = true;
        std::string why;
        Thing expected;
        for (const Node* child : document.tree().root()->GetChildren())
            isReadable &= child->isDevice() || !isWritten(*child);
        try {
            expected = Reader(bytes).configuration();
        } catch (const std::runtime_error& reason) {
            isReadable = false;
            why = reason.what();
        }
        bool hasFault = false;
        for (const auto& node : document.tree().nodes())
            hasFault |= isUnreadable(world, *node);
        EXPECT_NE(hasFault, isReadable) << why;

        const std::string messages = save(world, Answer::no);
        const bool isStopped = world.disk.files["/saved"] == "old";
        EXPECT_NE(isStopped, isReadable) << why << messages;
        if (isStopped) {
            const bool isAsked = messages.ends_with("Save all the same? [No]\n");
            ++(isAsked ? asked : refused);
            EXPECT_TRUE(isAsked || messages.ends_with("and cannot be saved in CreateXML\n"))
                << messages;
            const Node* shown = document.tree().selected();
            EXPECT_TRUE(shown != nullptr && isUnreadable(world, *shown)) << messages;
            if (!isAsked) return;
            save(world, Answer::yes);  // the refused save clicked the node, which sorts
            expectSameFile(world.disk.files["/saved"], latin1(written(inMemory(document))));
            return;
        }
        EXPECT_EQ(messages, "");
        expectSameFile(world.disk.files["/saved"], bytes);
        if (!isReadable) return;
        reader_.open("/saved", bytes);
        EXPECT_EQ(reader_.takeMessages(), "");
        expectSameFile(written(inMemory(reader_.document)), written(expected));
        ++readBack;
        if (hasChanged(world, before, expected)) ++changed;
    }

    int readBack = 0, changed = 0, asked = 0, refused = 0;  ///< counts of the results

 private:
    static bool isUnreadable(const EditorWorld& world, const Node& node) {
        return world.editor.fileRules().faultOf(node).kind >= FaultKind::unreadable;
    }
    static std::string save(EditorWorld& world, Answer answer) {
        world.disk.files["/saved"] = "old";
        world.desktop.willChoose("/saved");
        world.desktop.willAnswer({answer});
        world.editor.mnuSaveAs_Click();
        world.desktop.forgetAnswers();
        return world.takeMessages();
    }
    /// A text that is read back differently must have a visible sign.
    static bool hasChanged(const EditorWorld& world, const Thing& before, const Thing& after) {
        const std::string name =
            before.kind == 'b' ? utf8(inUpperCase(latin1(before.name))) : before.name;
        bool changed = name != after.name || before.texts != after.texts;
        const ConfigTree& tree = world.document.tree();
        const bool isVisible = tree.FindNode(before.node->key()) == before.node;
        const Node& shown = isVisible ? *before.node : *tree.root();
        EXPECT_TRUE(!changed || world.editor.fileRules().faultOf(shown).kind == FaultKind::changed)
            << before.name << " in " << outline(world.document);
        for (std::size_t i = 0; i < before.contents.size(); ++i)
            changed |= hasChanged(world, before.contents[i], after.contents.at(i));
        return changed;
    }

    EditorWorld reader_;
};

}  // namespace readBack
