// Random configurations with texts that collide, are invalid in XML or change in a file.
#pragma once

#include "model/Keys.h"
#include "support/RandomSteps.h"

/// Makes one random configuration after the other.
class RandomDocuments : public EditorWorld {
 public:
    RandomDocuments() {
        disk.writesSpoiledFiles = true;
        document.open = true;
    }

    void make() {
        oddity_ = std::array{0U, 0U, 3U, 12U}[below(4)];
        firstOdd_ = below(40);
        document.startAt("/random.xml");
        for (std::size_t changes = 4 + below(24); changes > 0; --changes)
            change();
    }

    /// Adds, moves, removes, renames or changes a random node. An impossible change is skipped.
    void change() {
        Node& node = anyNode();
        const bool isContainer = node.isDevice() || node.kind() == NodeKind::branch;
        try {
            if (node.parent() == nullptr) {
                addDevice();
            } else if (isContainer && !oneIn(3)) {
                oneIn(2) ? addBranch(node, text()) : addItem(node, text());
            } else if (node.isDroppedDevice()) {
                addItem(node, text());
            } else if (oneIn(3)) {
                dragAny();
            } else if (oneIn(4)) {
                document.RemoveSubtree(node);
            } else if (node.isDevice()) {
                document.change(node, anyDevice());
            } else if (isContainer) {
                document.renameBranch(node, text());
            } else {
                oneIn(2) ? document.renameItem(node, text()) : document.setComment(node, text());
            }
        } catch (const RunTimeError&) {
            // The name is in use.
        }
        document.saved = false;
        takeMessages();
    }

    bool oddAddresses = true;  ///< some addresses are arbitrary texts
    std::mt19937 random{walkSetting("RULES_SEED", 5)};
    std::size_t below(std::size_t n) { return random() % n; }

 private:
    bool oneIn(std::size_t n) { return below(n) == 0; }

    /// Has few letters, so that texts collide.
    std::string text() {
        static constexpr std::array usual{"a", "b", "A", "B", "a.b", "tag1", "\u00E4", "\u00C4"};
        static constexpr std::array odd{
            "\u20AC", "\u0178", "\u0416", "\U0001F600", "?",       "\t",
            "\n",     "\r",     "\r\n",   " ",          ".",       ":",
            "&",      "<",      ">",      "\"",         "]]>",     "&amp;",
            "\x01",   "\x7F",   "\u0085", "\u00AA",     "\u00B7",  "\u00DF",
            "\u00FF", "\u0153", "\u0152", "\u00D7",     "tag",     "TAGS",
            "-",      "1",      "\uFFFD", "\" x=\"",    "<b></b>", "</name><name>",
            "\\",     ",",      ";",      "'",          "=1+1"};
        std::string text;
        for (std::size_t pieces = 1 + below(2); pieces > 0; --pieces) {
            const bool isOdd = oddity_ > 0 && oneIn(oddity_);
            text += isOdd ? odd[(firstOdd_ + below(6)) % odd.size()] : usual[below(usual.size())];
        }
        return text;
    }
    DeviceFields anyDevice() {
        return {text(), oneIn(20) ? text() : "COM1", "USB", oneIn(2) ? "1500" : "-7"};
    }
    void addDevice() {
        document.setSettings({oneIn(40) ? text() : "COM1", oneIn(40) ? text() : "USB", 1000});
        const auto device = std::make_shared<clsPLC>();
        device->SetByForm(anyDevice());
        document.add(device);
    }
    void addBranch(Node& parent, const std::string& name) {
        const auto branch = std::make_shared<clsBranch>();
        branch->sName = name;
        branch->sKey = joinKey(parent.key(), name);
        document.add(branch, parent);
    }
    void addItem(Node& parent, const std::string& name) {
        const auto item = std::make_shared<clsItem>();
        item->sName = name;
        item->sKey = joinKey(parent.key(), name);
        item->sComment = oneIn(4) ? text() : "";
        item->sAddress = oddAddresses && oneIn(60) ? text() : "1/2/" + std::to_string(below(9));
        item->sDataType = oneIn(60) ? text() : oneIn(2) ? "EIS15" : "EIS1";
        item->sAccessRight = oneIn(60) ? text() : "READ";
        item->nElements = static_cast<std::int16_t>(below(32768));
        item->bFlag = oneIn(2);
        document.add(item, parent);
    }
    Node& anyNode() {
        auto node = document.tree().nodes().begin();
        for (auto skipped = below(document.tree().nodes().size()); skipped > 0; --skipped)
            ++node;
        return **node;
    }
    /// Drags a random node, mostly a device.
    void dragAny() {
        Node* source = &anyNode();
        while (source->parent() != nullptr && !source->isDevice() && !oneIn(3))
            source = source->parent();
        const SharedText target = anyNode().key();
        if (target != Document::rootKey || oneIn(8))
            drag(source->key().string(), target.string(), oneIn(4) ? TreeDrag::ctrlMask : 0);
    }

    std::size_t oddity_ = 0;    // one of so many pieces is odd; 0 for none
    std::size_t firstOdd_ = 0;  // few kinds of them in one document, so that they collide
};
