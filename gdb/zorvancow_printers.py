# gdb pretty-printers for the Zorvancow containers.
#
# Each printer shows a value as its elements and, in parentheses, how its
# storage is shared, read straight from the counts:
#
#   cow_String            "text" (share count N)
#   cow_COW<T>            cow_COW<T> (share count N) -> pointee
#   cow_1DArray<T>        cow_1DArray<T> of N (table share count N; B blocks, S shared) = {...}
#   cow_1DArrayList<T>,
#   cow_List<T>           the same, for the list's count of elements
#   cow_FixedArray<T>     cow_FixedArray<T> of N (share count N) = {...}
#   cow_2DArray<T>        cow_2DArray<T> R x C (share count N) = {{row 0}, {row 1}, ...}
#   cow_Btree<K,V>        cow_Btree<K, V> of N (root share count N) = {[key] = value, ...} in key order
#   cow_Map<K,V>          cow_Map<K, V> of N (root share count N) = {[key] = value, ...} in node-walk order
#
# Printing reads memory only; it never calls into the program, so it works
# on a core file too. `print/r` shows the raw fields.
#
# Load it with register(objfile) (the auto-load script next to libzorvancow
# does that), or by hand:
#   python import sys; sys.path.insert(0, "<dir of this file>"); import zorvancow_printers; zorvancow_printers.register(None)

import gdb
import gdb.printing


def _count(counter_pointer):
    """The count behind a cow_Counter* (or any pointer to a struct with
    `count`), or None for a null pointer."""
    if int(counter_pointer) == 0:
        return None
    return int(counter_pointer.dereference()['count'])


def _count_text(count):
    return '?' if count is None else str(count)


def _short_name(value):
    """The value's type name without the copy-policy argument of cow_COW."""
    basic = value.type.strip_typedefs().unqualified()
    return basic.tag or basic.name or str(basic)


def _default_element(element_type):
    """The value a slot without a block reads as: zero bytes, which is the
    default of numbers and strings (no header)."""
    basic = element_type.strip_typedefs()
    if basic.code in (gdb.TYPE_CODE_INT, gdb.TYPE_CODE_FLT, gdb.TYPE_CODE_BOOL, gdb.TYPE_CODE_ENUM,
                      gdb.TYPE_CODE_CHAR):
        return gdb.Value(0).cast(element_type)
    return gdb.Value(bytes(basic.sizeof), element_type)


def _handle_pointee(handle):
    """The pointee of a cow_CountedHld / cow_COW, a pointer (may be null)."""
    return handle['pointee']


def _handle_count(handle):
    return _count(handle['counter'])


class StringPrinter:
    """cow_String and atr_String: the text and how many values share it."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        header = self.value['header']
        if int(header) == 0:
            return '"" (no text)'
        text = self.value['text'].string(length=int(header.dereference()['length']), errors='replace')
        quoted = text.replace('\\', '\\\\').replace('"', '\\"')
        return '"%s" (share count %d)' % (quoted, int(header.dereference()['count']))


class HandlePrinter:
    """cow_COW<T> and cow_CountedHld<T>: the share count and the pointee."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        basic = self.value.type.strip_typedefs().unqualified()
        try:
            name = '%s<%s>' % (basic.tag.split('<', 1)[0], basic.template_argument(0))
        except (RuntimeError, gdb.error):
            name = _short_name(self.value)
        pointee = _handle_pointee(self.value)
        head = '%s (share count %s)' % (name, _count_text(_handle_count(self.value)))
        if int(pointee) == 0:
            return head + ' -> null'
        return head + ' -> ' + pointee.dereference().format_string()


class _BlockedElements:
    """Reads elements of a cow_1DArray by index, through its table, the way
    the array does: element i at position head + i, slot p >> shift."""

    def __init__(self, array):
        self.array = array
        self.shift = int(array['shift'])
        self.head = int(array['head'])
        self.end = int(array['endPosition'])
        self.capacity = int(array['capacity'])
        self.table = array['table']
        block_type = self.table.type.strip_typedefs().target().target()
        self.element_type = block_type.strip_typedefs()['data'].type.target()

    def sharing(self):
        table_count = _count(self.array['tableCounter'])
        if int(self.table) == 0 or self.end <= self.head:
            return 'table share count %s; no blocks' % _count_text(table_count)
        first = self.head >> self.shift
        stop = (self.end + (1 << self.shift) - 1) >> self.shift
        present = shared = absent = 0
        for slot in range(first, min(stop, self.capacity)):
            block = self.table[slot]
            if int(block) == 0:
                absent += 1
                continue
            present += 1
            if int(block.dereference()['count']) > 1:
                shared += 1
        text = 'table share count %s; %d block%s, %d shared' % (
            _count_text(table_count), present, '' if present == 1 else 's', shared)
        if absent:
            text += ', %d absent' % absent
        return text

    def elements(self, count):
        default = None
        for i in range(count):
            position = self.head + i
            slot = position >> self.shift
            block = self.table[slot] if 0 <= slot < self.capacity else gdb.Value(0)
            if int(block) == 0:
                if default is None:
                    default = _default_element(self.element_type)
                yield '[%d]' % i, default
            else:
                yield '[%d]' % i, block.dereference()['data'][position - (slot << self.shift)]


class ArrayPrinter:
    """cow_1DArray<T>: its elements, the table's share count and how many of
    its blocks are shared with other tables."""

    def __init__(self, value):
        self.value = value
        self.blocks = _BlockedElements(value)
        self.size = max(0, self.blocks.end - self.blocks.head)

    def to_string(self):
        return '%s of %d (%s)' % (_short_name(self.value), self.size, self.blocks.sharing())

    def children(self):
        if int(self.blocks.table) == 0:
            return iter(())
        return self.blocks.elements(self.size)

    def display_hint(self):
        return 'array'


class ListPrinter(ArrayPrinter):
    """cow_1DArrayList<T> and cow_List<T>: the list's count of elements on
    its blocked array."""

    def __init__(self, value):
        self.value = value
        self.blocks = _BlockedElements(value['array'])
        self.size = max(0, int(value['count']))


class FixedArrayPrinter:
    """cow_FixedArray<T>: the elements and the representation's share count."""

    def __init__(self, value):
        self.value = value
        self.rep = _handle_pointee(value['rep'])

    def to_string(self):
        size = int(self.rep.dereference()['size']) if int(self.rep) != 0 else 0
        return '%s of %d (share count %s)' % (_short_name(self.value), size, _count_text(_handle_count(self.value['rep'])))

    def children(self):
        if int(self.rep) == 0:
            return
        rep = self.rep.dereference()
        data = rep['data']
        for i in range(int(rep['size'])):
            yield '[%d]' % i, data[i]

    def display_hint(self):
        return 'array'


class MatrixPrinter:
    """cow_2DArray<T>: one child per row, each an array of the columns."""

    def __init__(self, value):
        self.value = value
        self.rep = _handle_pointee(value['rep'])

    def _extents(self):
        if int(self.rep) == 0:
            return 0, 0
        rep = self.rep.dereference()
        return int(rep['rows']), int(rep['columns'])

    def to_string(self):
        rows, columns = self._extents()
        return '%s %d x %d (share count %s)' % (_short_name(self.value), rows, columns,
                                                _count_text(_handle_count(self.value['rep'])))

    def children(self):
        rows, columns = self._extents()
        if rows == 0 or columns == 0:
            return
        data = self.rep.dereference()['data']
        if int(data) == 0:
            return
        row_type = data.type.target().array(columns - 1).pointer()
        for r in range(rows):
            yield '[%d]' % r, (data + r * columns).cast(row_type).dereference()

    def display_hint(self):
        return 'array'


class TreePrinter:
    """cow_Btree<K,V>: key/value pairs in key order (an in-order walk of the
    nodes, through the links' handles)."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        root = self.value['root']
        root_count = _handle_count(root.dereference()) if int(root) != 0 else None
        sharing = 'root share count %s' % _count_text(root_count) if root_count is not None else 'empty'
        return '%s of %d (%s)' % (_short_name(self.value), int(self.value['count']), sharing)

    @staticmethod
    def _node(link):
        """The node behind a link (a pointer to a handle), or None."""
        if int(link) == 0:
            return None
        pointee = _handle_pointee(link.dereference())
        return pointee.dereference() if int(pointee) != 0 else None

    def children(self):
        stack = []
        node = self._node(self.value['root'])
        while stack or node is not None:
            while node is not None:
                stack.append(node)
                node = self._node(node['left'])
            node = stack.pop()
            yield '[key]', node['key']
            yield '[value]', node['value']
            node = self._node(node['right'])

    def display_hint(self):
        return 'map'


class MapPrinter:
    """cow_Map<K,V>: key/value pairs in the order of the map's own node walk
    (pre-order, digit 0 first), which is not key order."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return '%s of %d (root share count %s)' % (_short_name(self.value), int(self.value['count']),
                                                   _count_text(_handle_count(self.value['root'])))

    def children(self):
        pending = []
        root = _handle_pointee(self.value['root'])
        if int(root) != 0:
            pending.append(root.dereference())
        while pending:
            node = pending.pop()
            yield '[key]', node['key']
            yield '[value]', node['value']
            for digit in (1, 0):
                child = _handle_pointee(node['child'][digit])
                if int(child) != 0:
                    pending.append(child.dereference())

    def display_hint(self):
        return 'map'


def build_printer():
    printer = gdb.printing.RegexpCollectionPrettyPrinter('zorvancow')
    printer.add_printer('cow_String', '^(cow|atr)_String$', StringPrinter)
    printer.add_printer('cow_COW', '^(cow_COW|cow_CountedHld)<.*>$', HandlePrinter)
    printer.add_printer('cow_1DArray', '^cow_1DArray<.*>$', ArrayPrinter)
    printer.add_printer('cow_1DArrayList', '^(cow_1DArrayList|cow_List)<.*>$', ListPrinter)
    printer.add_printer('cow_FixedArray', '^cow_FixedArray<.*>$', FixedArrayPrinter)
    printer.add_printer('cow_2DArray', '^cow_2DArray<.*>$', MatrixPrinter)
    printer.add_printer('cow_Btree', '^cow_Btree<.*>$', TreePrinter)
    printer.add_printer('cow_Map', '^cow_Map<.*>$', MapPrinter)
    return printer


def register(objfile):
    """Registers the printers with `objfile` (None: for every program)."""
    gdb.printing.register_pretty_printer(objfile, build_printer(), replace=True)
