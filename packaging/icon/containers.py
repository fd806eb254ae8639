"""The two containers that pixels are stored in."""
import struct
import zlib


def png(rows: "list[bytes]") -> bytes:
    """From rows of RGBA with 8 bits each."""
    def chunk(kind: bytes, data: bytes) -> bytes:
        return (struct.pack(">I", len(data)) + kind + data
                + struct.pack(">I", zlib.crc32(kind + data)))
    header = struct.pack(">IIBBBBB", len(rows[0]) // 4, len(rows), 8, 6, 0, 0, 0)
    data = zlib.compress(b"".join(b"\0" + row for row in rows), 9)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", data)
            + chunk(b"IEND", b""))


def icns(entries: "list[tuple[bytes, bytes]]") -> bytes:
    """An icon file of the Mac, from (type, PNG)."""
    data = b"".join(kind + struct.pack(">I", 8 + len(image)) + image for kind, image in entries)
    return b"icns" + struct.pack(">I", 8 + len(data)) + data
