#include "book/movetrie.h"

#include "board/move.h"
#include "platform/enforce.h"
#include "platform/system.h"

#include <cassert>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <string>
#include <system_error>
#include <vector>

namespace {

// A book file contains one record per node: the move, the number of children, and the file offset
// of each child's record. RECORD_BYTES is the size of a record without the offsets. All integers
// are little-endian. Each record is followed directly by the records of the node's descendants.
constexpr std::size_t MOVE_BYTES = sizeof(Move);
constexpr std::size_t NUMBER_BYTES = 4;
constexpr std::size_t RECORD_BYTES = MOVE_BYTES + NUMBER_BYTES;

// Maximum size of a book file in bytes. Limited by the offsets, which are signed 32-bit integers.
constexpr std::size_t MAX_BOOK_SIZE = std::numeric_limits<std::int32_t>::max();

// Number of names to try for the temporary file that contains the unfinished book.
constexpr int UNFINISHED_NAMES = 100;

using Bytes = std::vector<unsigned char>;

void PutNumber(unsigned char* place, std::int32_t number) {
    for (std::size_t i = 0; i < NUMBER_BYTES; ++i) {
        place[i] = static_cast<unsigned char>(static_cast<std::uint32_t>(number) >> (8 * i));
    }
}

std::int32_t GetNumber(const unsigned char* place) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < NUMBER_BYTES; ++i) {
        number |= std::uint32_t{place[i]} << (8 * i);
    }
    return static_cast<std::int32_t>(number);
}

// Writes only the fields that are defined for this move. The caller must have set all bytes to
// zero.
void PutMove(unsigned char* place, const Move& move) {
    PutNumber(place, move.from);
    PutNumber(place + 4, move.to);
    place[8] = move.piece;
    place[9] = move.captured;
    place[10] = move.promoted;
    place[11] = move.en_passant;
    place[12] = move.castle;
    if (move.en_passant) {
        PutNumber(place + 16, move.en_passant_square);
        PutNumber(place + 20, move.en_passant_piece);
    }
    if (move.castle) {
        PutNumber(place + 24, move.rook_from);
        PutNumber(place + 28, move.rook_to);
    }
}

Move GetMove(const unsigned char* place) {
    return {GetNumber(place),
            GetNumber(place + 4),
            place[8],
            place[9],
            place[10],
            place[11],
            place[12],
            GetNumber(place + 16),
            GetNumber(place + 20),
            GetNumber(place + 24),
            GetNumber(place + 28)};
}

MoveTrieNode* FindChild(const MoveTrieNode& node, const Move& move) {
    for (MoveTrieNode* child = node.children; child; child = child->next) {
        if (IsEqualMove(child->move, move)) return child;
    }
    return nullptr;
}

MoveTrieNode& AddChild(MoveTrieNode& node) {
    MoveTrieNode* child = new MoveTrieNode;
    InitMoveTrie(*child);
    child->next = node.children;
    node.children = child;
    return *child;
}

std::int32_t CountKept(const MoveTrieNode& node, std::int32_t minimum_count) {
    std::int32_t kept = 0;
    for (const MoveTrieNode* child = node.children; child; child = child->next) {
        kept += child->count >= minimum_count;
    }
    return kept;
}

// Appends the records of a node and its subtree. Omits nodes with a count below `minimum_count`,
// and their subtrees. Returns the number of records, or 0 if the file would exceed MAX_BOOK_SIZE.
std::int32_t AppendNode(Bytes& image, const MoveTrieNode& node, bool is_root,
                        std::int32_t minimum_count) {
    const std::size_t start = image.size();
    const std::int32_t kept = CountKept(node, minimum_count);
    const std::size_t end = start + RECORD_BYTES + NUMBER_BYTES * static_cast<std::size_t>(kept);
    if (end > MAX_BOOK_SIZE) return 0;
    image.resize(end, 0);
    if (!is_root) PutMove(&image[start], node.move);
    PutNumber(&image[start + MOVE_BYTES], kept);
    std::size_t table = start + RECORD_BYTES;
    std::int32_t nodes = 1;
    for (const MoveTrieNode* child = node.children; child; child = child->next) {
        if (child->count < minimum_count) continue;
        PutNumber(&image[table], static_cast<std::int32_t>(image.size()));
        table += NUMBER_BYTES;
        const std::int32_t below = AppendNode(image, *child, false, minimum_count);
        if (below == 0) return 0;
        nodes += below;
    }
    return nodes;
}

// Writes the bytes to a temporary file in the same folder, then renames that file to `name`.
// Returns false on failure. Fails if `name` exists and is not a regular file. A symbolic link is
// replaced by the new file. The link's target stays unchanged, because the target may be another
// user's book.
bool WriteWhole(const std::string& name, const Bytes& bytes) {
    std::error_code error;
    if (std::filesystem::exists(PathOf(name), error) && !IsPlainFile(name.c_str())) {
        return false;
    }
    std::FILE* file = nullptr;
    std::string unfinished;
    for (int i = 0; !file && i < UNFINISHED_NAMES; ++i) {
        unfinished = name + ".tmp" + std::to_string(i);
        file = OpenFile(unfinished.c_str(), FileUse::CREATE);
    }
    if (!file) return false;
    const bool is_written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    if ((std::fclose(file) == 0) && is_written && MoveIntoPlace(unfinished.c_str(), name.c_str())) {
        return true;
    }
    std::filesystem::remove(PathOf(unfinished), error);
    return false;
}

// A book file that is read from start to end.
struct BookFile {
    std::FILE* file;
    std::int64_t offset; // file position of the next byte
};

bool ReadBlock(BookFile& book_file, std::span<unsigned char> block) {
    book_file.offset += static_cast<std::int64_t>(block.size());
    return std::fread(block.data(), 1, block.size(), book_file.file) == block.size();
}

// Reads the next record and the records of its subtree. Returns null, or an error message. Each
// child's offset must equal the current file position, so that no record is read twice.
const char* ReadNode(BookFile& book_file, MoveTrieNode& node, int plies) {
    constexpr const char* OUTSIDE = "a record lies outside the file";
    if (plies > MAX_TRIE_PLIES) return "a line is too long";
    unsigned char record[RECORD_BYTES];
    if (!ReadBlock(book_file, record)) return OUTSIDE;
    node.move = GetMove(record);
    node.count = UNWEIGHTED_COUNT;
    const std::int32_t children = GetNumber(record + MOVE_BYTES);
    if (children < 0 || children > MAX_MOVES) return "a node has an impossible number of moves";
    unsigned char table[NUMBER_BYTES * MAX_MOVES];
    const std::size_t table_bytes = NUMBER_BYTES * static_cast<std::size_t>(children);
    if (!ReadBlock(book_file, {table, table_bytes})) return OUTSIDE;
    for (const unsigned char* place = table; place < table + table_bytes; place += NUMBER_BYTES) {
        if (GetNumber(place) != book_file.offset) {
            return "an offset does not fit the order of the records";
        }
        const char* error = ReadNode(book_file, AddChild(node), plies + 1);
        if (error) return error;
    }
    node.child_count = children;
    return nullptr;
}

const char* ReadWhole(BookFile& book_file, MoveTrieNode& root) {
    const char* error = ReadNode(book_file, root, 0);
    if (!error && std::getc(book_file.file) != EOF) error = "bytes lie behind the last record";
    return std::ferror(book_file.file) ? "it cannot be read" : error;
}

// True if there is memory for this many nodes. ReadMoveTrie checks this first, because the program
// cannot recover if memory runs out while nodes are allocated.
bool IsMemoryFor(std::uintmax_t nodes) {
    // Allows 16 bytes of overhead for each heap block.
    constexpr std::uintmax_t NODE_MEMORY = sizeof(MoveTrieNode) + 16;
    // 4 MiB for the stack and other uses.
    constexpr std::uintmax_t SPARE = std::uintmax_t{4} << 20;
    const auto bytes = static_cast<std::size_t>(nodes * NODE_MEMORY + SPARE);
    void* const room = AllocateTable(bytes);
    FreeTable(room, bytes);
    return room != nullptr;
}

// Returns an error message if the file exceeds MAX_BOOK_SIZE, or if there is not enough memory for
// its nodes. Returns null otherwise, also for a file of unknown size, such as a pipe.
const char* JudgeSize(const char* file_name) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(PathOf(file_name), error);
    if (error) return nullptr;
    if (size > MAX_BOOK_SIZE) return "it is too large";
    return IsMemoryFor(size / (RECORD_BYTES + NUMBER_BYTES)) ? nullptr : NO_MEMORY_FOR_BOOK.data();
}

} // namespace

void InitMoveTrie(MoveTrieNode& node) {
    node.children = nullptr;
    node.next = nullptr;
    node.child_count = 0;
}

void InsertIntoMoveTrie(MoveTrieNode& root, std::span<const Move> moves, bool is_weighted) {
    MoveTrieNode* node = &root;
    for (const Move& move : moves) {
        MoveTrieNode* child = FindChild(*node, move);
        if (child) {
            if (is_weighted) ++child->count;
        } else {
            child = &AddChild(*node);
            child->move = move;
            child->count = is_weighted ? 1 : UNWEIGHTED_COUNT;
            ++node->child_count;
        }
        node = child;
    }
}

std::int32_t WriteMoveTrie(const MoveTrieNode& root, const char* file_name,
                           std::int32_t minimum_count) {
    Bytes image;
    const std::int32_t nodes = AppendNode(image, root, true, minimum_count);
    return nodes > 0 && WriteWhole(file_name, image) ? nodes : 0;
}

const char* ReadMoveTrie(MoveTrieNode& root, const char* file_name) {
    RequireFile(file_name);
    InitMoveTrie(root);
    if (const char* error = JudgeSize(file_name)) return error;
    BookFile book_file{OpenFile(file_name, FileUse::READ), 0};
    if (!book_file.file) return "it cannot be read";
    const char* error = ReadWhole(book_file, root);
    std::fclose(book_file.file);
    if (error) {
        FreeMoveTrie(root);
        InitMoveTrie(root);
    }
    return error;
}

void FreeMoveTrie(MoveTrieNode& node) {
    for (MoveTrieNode* child = node.children; child;) {
        MoveTrieNode* next = child->next;
        FreeMoveTrie(*child);
        delete child;
        child = next;
    }
}
