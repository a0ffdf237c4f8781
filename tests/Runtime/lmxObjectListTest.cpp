#include <lmx/Runtime/lmxObjectList.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lmx {
namespace {

using tests::MessageOf;

/// Writes its end into a diary that the callback of the list writes into, too.
struct TItem {
    std::string Name;
    std::vector<std::string>* Diary;
    ~TItem() { Diary->push_back(Name + " freed"); }
};

struct ObjectList : testing::Test {
    using TDiary = std::vector<std::string>;
    TDiary Diary;
    std::unique_ptr<TObjectList<TItem>> List = std::make_unique<TObjectList<TItem>>();

    std::unique_ptr<TItem> New(const char* name) { return std::unique_ptr<TItem>(new TItem{name, &Diary}); }
    void Fill(std::initializer_list<const char*> names) {
        for (const char* name : names)
            List->Add(New(name));
    }
    void WriteDiary() {
        List->SetOnChange([this](TItem* item, TListChange change) { Note(item, change); });
    }
    void Note(const TItem* item, TListChange change) {
        static const char* const words[] = {" added", " removed", " extracted"};
        Diary.push_back(item->Name + words[static_cast<int>(change)] +
                        (List && List->Contains(item) ? ", in" : ", out"));
    }
    std::string Names() const {
        std::string names;
        for (const TItem* item : *List)
            names += item->Name;
        return names;
    }
};

TEST_F(ObjectList, KeepsTheOrderOfItsItems) {
    Fill({"a", "b"});
    List->Insert(1, New("c"));
    List->Insert(0, New("d"));
    List->Insert(4, New("e"));
    EXPECT_EQ(Names(), "dacbe");
    EXPECT_EQ(List->Count(), 5);
    EXPECT_FALSE(List->IsEmpty());
    EXPECT_EQ((*List)[2]->Name, "c");
    EXPECT_EQ(List->IndexOf((*List)[3]), 3);
    EXPECT_EQ(List->IndexOf(nullptr), -1);
}

TEST_F(ObjectList, RefusesNothingAndIndexesOutside) {
    Fill({"a"});
    EXPECT_EQ(MessageOf<EArgumentException>([&] { List->Add(nullptr); }), "item");
    for (int index : {-1, 2})
        EXPECT_EQ(MessageOf<EArgumentException>([&] { List->Insert(index, New("x")); }), "index");
    for (int index : {-1, 1}) {
        EXPECT_EQ(MessageOf<EArgumentException>([&] { (*List)[index]; }), "index");
        EXPECT_EQ(MessageOf<EArgumentException>([&] { List->Move(index, 0); }), "index");
        EXPECT_EQ(MessageOf<EArgumentException>([&] { List->Move(0, index); }), "index");
    }
    EXPECT_EQ(Names(), "a");
}

TEST_F(ObjectList, ReportsAnItemAfterItCameAndAfterItWentButBeforeItIsFreed) {
    WriteDiary();
    TItem* a = List->Add(New("a"));
    TItem* b = List->Add(New("b"));
    EXPECT_TRUE(List->Remove(a));
    EXPECT_FALSE(List->Remove(a));
    const std::unique_ptr<TItem> kept = List->Extract(b);
    EXPECT_EQ(kept.get(), b);
    EXPECT_EQ(List->Extract(b), nullptr);
    EXPECT_EQ(Diary, (TDiary{"a added, in", "b added, in", "a removed, out", "a freed", "b extracted, out"}));
}

TEST_F(ObjectList, ClearsAndDestroysFirstToLast) {
    Fill({"a", "b"});
    WriteDiary();
    List->Clear();
    EXPECT_EQ(Diary, (TDiary{"a removed, out", "a freed", "b removed, out", "b freed"}));
    Diary.clear();
    List->SetOnChange(nullptr);
    Fill({"c", "d"});
    List->SetOnChange([this](TItem* item, TListChange) { Diary.push_back(item->Name + " removed"); });
    List.reset();
    EXPECT_EQ(Diary, (TDiary{"c removed", "c freed", "d removed", "d freed"}));
}

TEST_F(ObjectList, MovesWithoutAReport) {
    Fill({"a", "b", "c", "d"});
    WriteDiary();
    List->Move(0, 2);
    EXPECT_EQ(Names(), "bcad");
    List->Move(3, 0);
    EXPECT_EQ(Names(), "dbca");
    List->Move(1, 1);
    EXPECT_EQ(Names(), "dbca");
    EXPECT_TRUE(Diary.empty());
}

TEST_F(ObjectList, CountsItsChanges) {
    std::uint64_t last = List->GetChangeCount();
    const auto expectAChange = [&] {
        EXPECT_GT(List->GetChangeCount(), last);
        last = List->GetChangeCount();
    };
    Fill({"a", "b", "c"});
    expectAChange();
    List->Move(0, 2);
    expectAChange();
    List->Remove((*List)[0]);
    expectAChange();
    const auto kept = List->Extract((*List)[0]);
    expectAChange();
    EXPECT_FALSE(List->Remove(kept.get()));
    EXPECT_TRUE(List->Contains((*List)[0]));
    EXPECT_EQ(List->GetChangeCount(), last);
    List->Clear();
    expectAChange();
}

// ---- A callback that changes the list

TEST_F(ObjectList, ItsCallbackMayRemoveAnotherItem) {
    Fill({"a", "b", "c"});
    List->SetOnChange([this](TItem* item, TListChange change) {
        Note(item, change);
        if (item->Name == "a")
            List->Remove((*List)[0]);
    });
    List->Remove((*List)[0]);
    EXPECT_EQ(Names(), "c");
    EXPECT_EQ(Diary, (TDiary{"a removed, out", "b removed, out", "b freed", "a freed"}));
}

TEST_F(ObjectList, ItsCallbackMayTakeTheNewItemOutAgain) {
    List->SetOnChange([this](TItem* item, TListChange change) {
        if (change == TListChange::lcAdded)
            List->Remove(item);
    });
    EXPECT_EQ(List->Add(New("a")), nullptr);
    EXPECT_TRUE(List->IsEmpty());
}

TEST_F(ObjectList, ItsCallbackMayAddAnother) {
    List->SetOnChange([this](TItem* item, TListChange) {
        if (item->Name == "a")
            List->Insert(0, New("b"));
    });
    EXPECT_EQ(List->Add(New("a"))->Name, "a");
    EXPECT_EQ(Names(), "ba");
}

TEST_F(ObjectList, ClearRemovesWhatWasThereAndNothingElse) {
    Fill({"a", "b"});
    List->SetOnChange([this](TItem* item, TListChange change) {
        Note(item, change);
        if (change == TListChange::lcRemoved)
            List->Insert(0, New(item->Name == "a" ? "c" : "d"));
    });
    List->Clear();
    EXPECT_EQ(Names(), "dc");
    EXPECT_EQ(Diary, (TDiary{"a removed, out", "c added, in", "a freed", "b removed, out", "d added, in", "b freed"}));
}

TEST_F(ObjectList, DestructionEndsThoughItsCallbackAddsAtEachRemoval) {
    Fill({"a", "b"});
    TObjectList<TItem>* list = List.get();
    List->SetOnChange([this, list](TItem* item, TListChange change) {
        if (change == TListChange::lcRemoved) {
            Diary.push_back(item->Name + " removed");
            list->Add(New("c"));
        }
    });
    List.reset();
    EXPECT_EQ(Diary, (TDiary{"a removed", "a freed", "b removed", "b freed", "c freed", "c freed"}));
}

TEST_F(ObjectList, ClearMissesNothingThatIsMovedMeanwhile) {
    Fill({"a", "b", "c", "d"});
    List->SetOnChange([this](TItem* item, TListChange change) {
        Note(item, change);
        if (change != TListChange::lcRemoved)
            return;
        if (item->Name == "a")
            List->Insert(0, New("x"));
        else if (item->Name == "b")
            List->Move(2, 0); // d, to where the clearing has been
    });
    List->Clear();
    EXPECT_EQ(Names(), "x");
    EXPECT_EQ(Diary, (TDiary{"a removed, out", "x added, in", "a freed", "b removed, out", "b freed", "c removed, out",
                             "c freed", "d removed, out", "d freed"}));
}

TEST_F(ObjectList, AClearWithinAClearLeavesNothingForTheOuterOne) {
    Fill({"a", "b", "c"});
    List->SetOnChange([this](TItem* item, TListChange change) {
        Note(item, change);
        if (item->Name == "a" && change == TListChange::lcRemoved) {
            List->Clear();
            List->Add(New("d"));
        }
    });
    List->Clear();
    EXPECT_EQ(Names(), "d");
    EXPECT_EQ(Diary, (TDiary{"a removed, out", "b removed, out", "b freed", "c removed, out", "c freed", "d added, in",
                             "a freed"}));
}

TEST_F(ObjectList, KnowsWhichItemsAreArriving) {
    std::vector<bool> arriving;
    TItem* a = nullptr;
    List->SetOnChange([&](TItem* item, TListChange change) {
        arriving.push_back(List->IsArriving(item));
        if (item->Name == "a" && change == TListChange::lcAdded) {
            a = item;
            List->Add(New("b"));
            arriving.push_back(List->IsArriving(a)); // while b came
        } else if (item->Name == "c" && change == TListChange::lcAdded) {
            const std::unique_ptr<TItem> taken = List->Extract(item);
            arriving.push_back(List->IsArriving(taken.get()));
        }
    });
    EXPECT_NE(List->Add(New("a")), nullptr);
    EXPECT_EQ(arriving, (std::vector<bool>{true, true, true})) << "a, b within a, a again";
    EXPECT_FALSE(List->IsArriving(a)) << "it has arrived";
    EXPECT_FALSE(List->IsArriving(nullptr));
    arriving.clear();
    EXPECT_EQ(List->Add(New("c")), nullptr);
    EXPECT_EQ(arriving, (std::vector<bool>{true, false, false})) << "coming, going, gone";
    List->SetOnChange({}); // `arriving` goes before the list
}

TEST_F(ObjectList, AnItemThatWasTakenOutAndPutBackArrivesAnew) {
    int calls = 0;
    TItem* item = nullptr;
    List->SetOnChange([&](TItem* changed, TListChange change) {
        if (change != TListChange::lcAdded || ++calls > 1)
            return;
        item = List->Add(List->Extract(changed));
        EXPECT_FALSE(List->IsArriving(changed)) << "all have been told of its second coming";
    });
    EXPECT_EQ(List->Add(New("a")), nullptr) << "by then it had left";
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(List->IndexOf(item), 0);
    EXPECT_EQ(calls, 2);
}

TEST_F(ObjectList, FindsItemsFromBothEnds) {
    Fill({"a", "b", "c", "d", "e"});
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(List->IndexOf((*List)[i]), i);
    List->Remove((*List)[4]);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(List->IndexOf((*List)[i]), i);
    const auto other = New("x");
    EXPECT_EQ(List->IndexOf(other.get()), -1);
}

TEST_F(ObjectList, ItsItemsMayTouchItWhenTheyGo) {
    struct TClinging {
        TObjectList<TClinging>* List = nullptr;
        TClinging* Friend = nullptr;
        ~TClinging() {
            if (Friend)
                List->Remove(Friend);
        }
    };
    auto list = std::make_unique<TObjectList<TClinging>>();
    TClinging* first = list->Add(std::make_unique<TClinging>());
    first->List = list.get();
    first->Friend = list->Add(std::make_unique<TClinging>());
    list->Add(std::make_unique<TClinging>());
    list->Clear();
    EXPECT_TRUE(list->IsEmpty());
}

TEST_F(ObjectList, AddGivesBackTheTypeThatItWasGiven) {
    struct TRoot {
        virtual ~TRoot() = default;
    };
    struct TLeaf : TRoot {
        int Extra = 5;
    };
    TObjectList<TRoot> list;
    EXPECT_EQ(list.Add(std::make_unique<TLeaf>())->Extra, 5);
    EXPECT_EQ(list.Insert(0, std::make_unique<TLeaf>())->Extra, 5);
    EXPECT_EQ(list.Count(), 2);
}

TEST_F(ObjectList, AWalkMeetsEachItemOnceInOrder) {
    Fill({"a", "b", "c"});
    std::string met;
    List->ForEach([&](TItem* item) { met += item->Name; });
    EXPECT_EQ(met, "abc");
    met.clear();
    List->ForEach([&](TItem* item) {
        met += item->Name;
        return item->Name != "b";
    });
    EXPECT_EQ(met, "ab");
}

TEST_F(ObjectList, AWalkSurvivesItemsThatComeAndGo) {
    Fill({"a", "b", "c", "d"});
    std::string met;
    List->ForEach([&](TItem* item) {
        met += item->Name;
        if (item->Name == "a") {
            List->Insert(0, New("x")); // before the walk
            List->Add(New("y"));       // behind it: not met, it was not there
            List->Remove((*List)[2]);  // b, which is next
        } else if (item->Name == "c") {
            List->Remove(item); // itself
            List->Remove((*List)[0]);
        }
    });
    EXPECT_EQ(met, "acd");
    EXPECT_EQ(Names(), "ady");
}

TEST_F(ObjectList, WalksWithinWalksKeepTheirPlaces) {
    Fill({"a", "b", "c"});
    std::string met;
    List->ForEach([&](TItem* item) {
        const std::string outer = item->Name; // the item goes on the way
        List->ForEach([&](TItem* inner) {
            met += outer + inner->Name + " ";
            if (outer == "a" && inner->Name == "b")
                List->Remove((*List)[0]);
        });
    });
    EXPECT_EQ(met, "aa ab ac bb bc cb cc ");
}

TEST_F(ObjectList, AWalkEndsWithItsList) {
    Fill({"a", "b"});
    std::string met;
    List->ForEach([&](TItem* item) {
        met += item->Name;
        List.reset();
    });
    EXPECT_EQ(met, "a");
}

TEST_F(ObjectList, AWalkThatRaisesLeavesTheListUsable) {
    Fill({"a", "b"});
    EXPECT_THROW(List->ForEach([](TItem*) { throw EInvalidOperation(QStringLiteral("x")); }), EInvalidOperation);
    List->Remove((*List)[0]);
    EXPECT_EQ(Names(), "b");
}

TEST_F(ObjectList, ItsCallbackMayReplaceItself) {
    Fill({"a", "b"});
    const auto witness = std::make_shared<int>(7);
    List->SetOnChange([this, witness](TItem* item, TListChange) {
        List->SetOnChange(nullptr);
        Diary.push_back(item->Name + std::to_string(*witness)); // what it holds must still be there
    });
    List->Clear();
    EXPECT_EQ(Diary, (TDiary{"a7", "a freed", "b freed"}));
}

TEST_F(ObjectList, ItsCallbackMayDestroyTheList) {
    Fill({"a", "b"});
    List->SetOnChange([this](TItem* item, TListChange) {
        Diary.push_back(item->Name + " removed");
        List.reset();
    });
    List->Clear();
    EXPECT_EQ(List, nullptr);
    EXPECT_EQ(Diary, (TDiary{"a removed", "b removed", "b freed", "a freed"}));
}

TEST_F(ObjectList, ItsCallbackMayDestroyTheListThatIsBeingFilled) {
    List->SetOnChange([this](TItem*, TListChange) { List.reset(); });
    EXPECT_EQ(List->Add(New("a")), nullptr);
    EXPECT_EQ(List, nullptr);
}

} // namespace
} // namespace lmx
