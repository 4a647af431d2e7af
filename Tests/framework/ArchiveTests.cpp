// Archives and the files under them: what is stored comes back, and no bytes can do harm.
#include "afx.h"

#include "support/ImportHook.h"
#include "support/LeakCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace std::string_literals;

// The cause of the exception that the action ends in; `none` is 0 in both classes.
template <class Exception, class Action>
int CauseOf(Action action)
{
    try {
        action();
        return Exception::none;
    } catch (Exception* exception) {
        const int cause = exception->m_cause;
        exception->Delete();
        return cause;
    }
}

// A web of objects on the heap that own nothing, so that no file can make them delete each other;
// all die at the end of the test.
class Node : public CObject
{
    DECLARE_SERIAL(Node)

    Node() { live.insert(this); }
    ~Node() override { live.erase(this); }
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring()) {
            ar << value << name << first << second;
        } else {
            schema = ar.GetObjectSchema();
            ar >> value >> name >> first >> second;
        }
    }
    static void DeleteAll()
    {
        while (!live.empty()) {
            delete *live.begin();
        }
    }

    static inline std::set<Node*> live;
    int value = 0;
    CString name;
    Node* first = nullptr;
    Node* second = nullptr;
    UINT schema = 0;
};
IMPLEMENT_SERIAL(Node, CObject, VERSIONABLE_SCHEMA | 2)

class Leaf : public Node
{
    DECLARE_SERIAL(Leaf)
};
IMPLEMENT_SERIAL(Leaf, Node, 5)

// All bytes of a file that `store` fills through an archive with a small buffer.
std::string Store(const std::function<void(CArchive&)>& store, int bufferSize = 128)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store, bufferSize);
    store(archive);
    archive.Close();
    std::string bytes(file.GetLength(), '\0');
    file.SeekToBegin();
    file.Read(bytes.data(), bytes.size());
    return bytes;
}

// The cause of the archive's exception; any other one fails the test.
int Load(std::string bytes, const std::function<void(CArchive&)>& load, int bufferSize = 128)
{
    CMemFile file(reinterpret_cast<BYTE*>(bytes.data()), bytes.size());
    CArchive archive(&file, CArchive::load, bufferSize);
    return CauseOf<CArchiveException>([&] { load(archive); });
}

void LoadNode(CArchive& archive)
{
    Node* node = nullptr;
    archive >> node;
}

// A node inside a node, so many deep, as bytes: each stored class but the first is a reference.
std::string MakeChain(unsigned depth)
{
    std::string bytes = "\xFF\xFF\x02\0\x04\0Node"s;
    for (unsigned i = 0; i < depth; ++i) {
        bytes += (i == 0 ? ""s : "\x01\x80"s) + "\0\0\0\0\xFF\xFE\xFF\0"s;
    }
    return bytes + std::string(4 * depth - 2, '\0');
}

class ArchiveTest : public testing::Test
{
protected:
    ~ArchiveTest() override { Node::DeleteAll(); }
};

// The largest block that anybody asks operator new for.
std::size_t largestBlock = 0;
void* (*systemMalloc)(std::size_t) = nullptr;

void* WatchMalloc(std::size_t size)
{
    largestBlock = std::max(largestBlock, size);
    return systemMalloc(size);
}

}  // namespace

TEST_F(ArchiveTest, ValuesOfEveryTypeComeBack)
{
    const auto check = [](auto value, std::size_t size) {
        const std::string bytes = Store([&](CArchive& ar) { ar << value; });
        EXPECT_EQ(bytes.size(), size);
        auto back = decltype(value)();
        EXPECT_EQ(Load(bytes, [&](CArchive& ar) { ar >> back; }), CArchiveException::none);
        EXPECT_TRUE(back == value);
    };
    check(BYTE{200}, 1), check('c', 1), check(true, 1), check(WORD{60000}, 2), check(short{-2}, 2);
    check(L'\u20AC', 2), check(-3, 4), check(4U, 4), check(-5L, 4), check(6UL, 4), check(7.5F, 4);
    check(-8.25, 8), check(-9LL, 8), check(10ULL, 8), check(CRect(1, -2, 3, 4), 16);
    check(CPoint(5, -6), 8), check(CSize(7, 8), 8);
}

TEST_F(ArchiveTest, LeavesTheFileWhereItStopped)
{
    CMemFile file;
    {
        CArchive storing(&file, CArchive::store);
        storing << 1 << 2 << 3;
    }  // the destructor writes
    file.SeekToBegin();
    CArchive loading(&file, CArchive::load);
    EXPECT_EQ(CauseOf<CArchiveException>([&] { loading << 1; }), CArchiveException::readOnly);
    int value = 0;
    loading >> value;
    loading.Close();
    EXPECT_EQ(file.GetPosition(), sizeof(int));
    EXPECT_EQ(CauseOf<CArchiveException>([&] { loading >> value; }),
              CArchiveException::genericException);
}

TEST_F(ArchiveTest, StringHasItsLengthInAsFewBytesAsItTakes)
{
    const std::pair<int, std::string> cases[] = {
        {254, "\xFF\xFE\xFF\xFE"s},
        {255, "\xFF\xFE\xFF\xFF\xFF\0"s},
        {65533, "\xFF\xFE\xFF\xFF\xFD\xFF"s},
        {65534, "\xFF\xFE\xFF\xFF\xFF\xFF\xFE\xFF\0\0"s}};  // its word would be the mark
    CString back, longBack;
    const auto load = [&](CArchive& ar) { ar >> back; };
    for (const auto& [length, head] : cases) {
        const CString text(L'\u20AC', length);
        for (const int bufferSize : {1, 128, 600, 4096}) {
            const std::string bytes = Store([&](CArchive& ar) { ar << text; }, bufferSize);
            EXPECT_EQ(bytes.substr(0, head.size()), head);
            EXPECT_EQ(bytes.size(), head.size() + 2 * length);
            EXPECT_EQ(Load(bytes, load, bufferSize), CArchiveException::none);
            EXPECT_TRUE(back == text);
        }
    }
    const std::string narrow = "\x03"
                               "abc\xFF\0\x01"s +
                               std::string(256, 'x');
    EXPECT_EQ(Load(narrow, [&](CArchive& ar) { ar >> back >> longBack; }), CArchiveException::none);
    EXPECT_TRUE(back == L"abc" && longBack == CString(L'x', 256));
}

TEST_F(ArchiveTest, KeepsIdentityAndClassOfManyObjects)
{
    std::vector<Node*> nodes(0x8001);  // numbers that a word cannot hold
    std::generate(nodes.begin(), nodes.end(), [] { return new Node; });
    Node* const last = new Leaf;
    nodes.insert(nodes.end(), {last, last, nodes.front()});
    const std::string bytes = Store([&](CArchive& ar) {
        for (const Node* node : nodes) {
            ar << node;
        }
    });
    const auto load = [&](CArchive& ar) {
        for (Node*& node : nodes) {
            ar >> node;
        }
    };
    EXPECT_EQ(Load(bytes, load), CArchiveException::none);
    const Node* const* const end = nodes.data() + nodes.size();
    EXPECT_TRUE(end[-1] == nodes.front() && end[-2] == end[-3] && end[-2] != last);
    EXPECT_TRUE(end[-2]->IsKindOf(RUNTIME_CLASS(Leaf)));
}

// A node up to its first reference.
const std::string nodeHead = "\xFF\xFF\x02\0\x04\0Node\0\0\0\0\xFF\xFE\xFF\0"s;

TEST_F(ArchiveTest, NamesTheDamage)
{
    const std::pair<std::string, int> cases[] = {
        {"\xFF\xFF\x02\0\x04\0Nude"s, CArchiveException::badClass},
        {"\xFF\xFF\0\0\x07\0CObject"s, CArchiveException::badClass},  // has no state
        {"\xFF\xFF\x02\0\xFF\xFFNode"s, CArchiveException::badClass},  // an endless name
        {"\xFF\xFF\x04\0\x04\0Leaf"s, CArchiveException::badSchema},
        {nodeHead + "\x03\0\0\0"s, CArchiveException::badIndex},  // an object that comes later
        {nodeHead + "\x01\0\0\0"s, CArchiveException::badIndex},  // a class as an object
        {nodeHead + "\x02\x80\0\0"s, CArchiveException::badIndex},  // an object as a class
        {nodeHead + "\0\x80\0\0"s, CArchiveException::badIndex},  // null as a class
        {nodeHead + "\xFF\x7F\xFF\xFF\xFF\x7F"s, CArchiveException::badIndex},
        {MakeChain(256), CArchiveException::none},  // the deepest allowed
        {MakeChain(257), CArchiveException::badIndex}};
    for (const auto& [bytes, cause] : cases) {
        EXPECT_EQ(Load(bytes, &LoadNode), cause) << testing::PrintToString(bytes);
        Node::DeleteAll();
    }
}

TEST_F(ArchiveTest, RefusesObjectsOfAnotherClass)
{
    const std::string node = nodeHead + "\0\0\0\0"s;
    Leaf* leaf = nullptr;
    EXPECT_EQ(Load(node, [&](CArchive& ar) { ar >> leaf; }), CArchiveException::badClass);
    EXPECT_TRUE(Node::live.empty());  // not even made
    const auto loadAgainAsLeaf = [&](CArchive& ar) {
        LoadNode(ar);
        ar >> leaf;
    };
    EXPECT_EQ(Load(node + "\x02\0"s, loadAgainAsLeaf), CArchiveException::badClass);
}

TEST_F(ArchiveTest, StoresNothingTooDeepToBeLoaded)
{
    Node* chain = nullptr;
    for (int depth = 1; depth <= 257; ++depth) {
        Node* const outer = new Node;
        outer->first = std::exchange(chain, outer);
        const int expected = depth <= 256 ? CArchiveException::none : CArchiveException::badIndex;
        const auto store = [&] { Store([&](CArchive& ar) { ar << chain; }); };
        EXPECT_EQ(CauseOf<CArchiveException>(store), expected);
    }
}

TEST_F(ArchiveTest, ForgetsAnObjectThatFailed)
{
    const auto load = [](CArchive& ar) {
        EXPECT_EQ(CauseOf<CArchiveException>([&] { LoadNode(ar); }), CArchiveException::badClass);
        EXPECT_TRUE(Node::live.empty());
        LoadNode(ar);
    };
    const std::string bytes = nodeHead + "\xFF\xFF\0\0\x04\0Nude\x02\0"s;
    EXPECT_EQ(Load(bytes, load), CArchiveException::badIndex);
}

TEST_F(ArchiveTest, SurvivesEveryTruncationAndEveryWrongByte)
{
    Node* const root = new Node;
    Leaf* const leaf = new Leaf;
    root->name = L"root";
    root->first = root->second = leaf;
    leaf->first = root;
    const auto load = [](CArchive& ar) {
        LoadNode(ar);
        std::vector<CObject*> objects(ar.ReadCount());
        for (CObject*& object : objects) {
            ar >> object;
        }
    };
    const std::string whole = Store([&](CArchive& ar) {
        ar << root;
        ar.WriteCount(2);
        ar << leaf << static_cast<CObject*>(nullptr);
    });
    ASSERT_EQ(Load(whole, load), CArchiveException::none);
    Node::DeleteAll();

    const LeakCheck leaks;
    const ImportHook watch(L"libstdc++-6.dll", "msvcrt.dll", "malloc", &WatchMalloc);
    systemMalloc = watch.Original<void*(std::size_t)>();
    largestBlock = 0;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_NE(Load(whole.substr(0, i), load), CArchiveException::none) << i;
        Node::DeleteAll();
        std::string damaged = whole;
        for (const int change : {1, 2, 4, 8, 16, 32, 64, 128, 0x7F, 0xFF}) {
            damaged[i] = static_cast<char>(whole[i] ^ change);
            Load(damaged, load);
            Node::DeleteAll();
        }
    }
    EXPECT_LE(largestBlock, 4 * whole.size());
}

TEST_F(ArchiveTest, KnowsClassesWhileTheirModuleIsLoaded)
{
    CRuntimeClass description{"Passing", 1, 1, nullptr, RUNTIME_CLASS(CObject)};
    {
        const AFX_CLASSINIT known(&description);
        EXPECT_EQ(CRuntimeClass::FromName("Passing"), &description);
        EXPECT_EQ(CRuntimeClass::FromName("Leaf"), RUNTIME_CLASS(Leaf));
    }
    EXPECT_EQ(CRuntimeClass::FromName("Passing"), nullptr);
}

TEST(MemFileTest, GrowsAndFillsGapsWithZeros)
{
    CMemFile file(16);
    file.Seek(20, CFile::begin);
    file.Write("end", 3);
    file.SetLength(22);
    file.SetLength(25);
    EXPECT_EQ(CauseOf<CFileException>([&] { file.Seek(-26, CFile::end); }),
              CFileException::badSeek);
    EXPECT_EQ(file.Seek(-25, CFile::end), 0);
    std::string bytes(30, '?');
    EXPECT_EQ(file.Read(bytes.data(), bytes.size()), 25);
    EXPECT_EQ(bytes, std::string(20, '\0') + "en\0\0\0?????"s);
}

TEST(FileTest, KeepsWhatAnArchiveStores)
{
    wchar_t folder[MAX_PATH], path[MAX_PATH];
    ::GetTempPathW(MAX_PATH, folder);
    ::GetTempFileNameW(folder, L"arc", 0, path);
    {
        CFile file(path, CFile::modeCreate | CFile::modeWrite);
        CArchive archive(&file, CArchive::store);
        archive << CString(L"kept");
    }
    {
        CFile file(path, CFile::modeRead);
        CArchive archive(&file, CArchive::load);
        CString text;
        archive >> text;
        EXPECT_TRUE(text == L"kept");
        EXPECT_EQ(CauseOf<CFileException>([&] { file.Write("x", 1); }),
                  CFileException::accessDenied);
    }
    ::DeleteFileW(path);
    CFileException error;
    EXPECT_FALSE(CFile().Open(path, CFile::modeRead, &error));
    EXPECT_EQ(error.m_cause, CFileException::fileNotFound);
}
