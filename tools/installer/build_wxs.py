#!/usr/bin/python3 -B
"""build_wxs.py CONTENT ROWS VERSION BITS - prints the description of an installer, as wixl takes it.

CONTENT is the folder with what the package holds. ROWS is a folder with what registration_rows prints of each library in
it, in files of their names, from where they stand now; the installer writes the same rows for where it puts them."""

import pathlib
import sys
import uuid
from xml.sax.saxutils import quoteattr

# Made once; everything else that identifies the installers follows from these.
FAMILY = uuid.UUID("6d0a9a55-2f0f-4c0b-9f37-5a0e0b8c3f57")

LIBRARIES = ["VrxCommon.dll", "VrxSettings.dll"]
# What programs need; the rest is for people.
REQUIRED = {"LICENSE"}
REQUIRED_SUFFIXES = {".dll", ".tlb", ".chm", ".manifest"}


def identifier(*words):
    return str(uuid.uuid5(FAMILY, " ".join(words))).upper()


class Names:
    """Short names for the installer's tables."""

    def __init__(self):
        self.names = {}

    def of(self, kind, path):
        return self.names.setdefault((kind, path), f"{kind}{len(self.names)}")


class Installer:
    def __init__(self, content, rows, version, bits):
        self.content, self.version, self.bits = pathlib.Path(content), version, bits
        self.rows = {library: read_rows(pathlib.Path(rows) / library) for library in LIBRARIES}
        self.names = Names()
        self.lines = []
        self.features = {"Component": [], "Documentation": []}

    def add(self, depth, text):
        self.lines.append("  " * depth + text)

    def component(self, depth, feature, path, shared=False):
        """Opens a component. A shared one is the same in both installers, and goes with the last of them."""
        name = self.names.of("component", path)
        self.features[feature].append(name)
        code = identifier("shared", path) if shared else identifier(self.bits, path)
        wide = "yes" if self.bits == "64" and not shared else "no"
        self.add(depth, f'<Component Id="{name}" Guid="{code}" Win64="{wide}">')

    def value_of(self, text):
        """The text of a row, with places on this machine as places on that of the user."""
        for library in LIBRARIES:
            path = self.windows_folder + "\\" + library
            if text.startswith(path):
                return f"[#{self.names.of('file', library)}]" + text[len(path) :]
        return "[INSTALLDIR]" if text == self.windows_folder else text

    @property
    def windows_folder(self):
        return "Z:" + str(self.content.resolve()).replace("/", "\\")

    def row(self, depth, row, key_path=False):
        key = "Software\\Classes\\" + row[0]
        if len(row) == 1:
            # The installer's own way to ask for a key without values.
            self.add(depth, f'<RegistryValue Root="HKLM" Key={quoteattr(key)} Name="+" Type="string" Value=""/>')
            return
        name = f" Name={quoteattr(row[1])}" if row[1] else ""
        path = ' KeyPath="yes"' if key_path else ""
        value = quoteattr(self.value_of(row[2]))
        self.add(depth, f'<RegistryValue Root="HKLM" Key={quoteattr(key)}{name} Type="string" Value={value}{path}/>')

    def file(self, depth, path):
        """One file, one component; a library brings the rows that its kind has for itself."""
        relative = path.relative_to(self.content).as_posix()
        required = relative in REQUIRED or relative.startswith("licences/")
        required = required or (path.parent == self.content and path.suffix in REQUIRED_SUFFIXES)
        self.component(depth, "Component" if required else "Documentation", relative)
        name = self.names.of("file", relative)
        self.add(depth + 1, f'<File Id="{name}" Name={quoteattr(path.name)} Source={quoteattr(relative)} KeyPath="yes"/>')
        if relative in LIBRARIES:
            for row in self.rows[relative]:
                if not is_shared(row):
                    self.row(depth + 1, row)
        self.add(depth, "</Component>")

    def shared_rows(self, depth, library):
        self.component(depth, "Component", "rows of " + library, shared=True)
        for number, row in enumerate(filter(is_shared, self.rows[library])):
            self.row(depth + 1, row, key_path=number == 0)
        self.add(depth, "</Component>")

    def folder(self, depth, folder):
        for path in sorted(folder.iterdir()):
            if path.is_dir():
                name = self.names.of("folder", path.relative_to(self.content).as_posix())
                self.add(depth, f'<Directory Id="{name}" Name={quoteattr(path.name)}>')
                self.folder(depth + 1, path)
                self.add(depth, "</Directory>")
            elif path.name != "SHA256SUMS":
                self.file(depth, path)

    def feature(self, name, title, description, required):
        absent = ' Absent="disallow"' if required else ""
        self.add(2, f'<Feature Id="{name}" Title="{title}" Description="{description}" Level="1"{absent}>')
        for component in self.features[name]:
            self.add(3, f'<ComponentRef Id="{component}"/>')
        self.add(2, "</Feature>")

    def text(self):
        kind = f"{self.bits}-bit"
        programs = "ProgramFiles64Folder" if self.bits == "64" else "ProgramFilesFolder"
        self.add(0, '<?xml version="1.0" encoding="utf-8"?>')
        self.add(0, '<Wix xmlns="http://schemas.microsoft.com/wix/2006/wi">')
        self.add(
            1,
            f'<Product Id="{identifier("product", self.version, self.bits)}" Name="VrxCommon ({kind})" Language="1033"'
            f' Version="{self.version}" Manufacturer="The VrxCommon authors"'
            f' UpgradeCode="{identifier("upgrade", self.bits)}">',
        )
        self.add(2, '<Package InstallerVersion="200" Compressed="yes" InstallScope="perMachine"')
        self.add(3, f'Description="VrxCommon {self.version}, {kind}" Manufacturer="The VrxCommon authors"/>')
        self.add(2, '<MajorUpgrade DowngradeErrorMessage="A newer version of VrxCommon is installed."/>')
        # There are no pages in it for choosing what to change.
        self.add(2, '<Property Id="ARPNOMODIFY" Value="1"/>')
        self.add(2, '<Media Id="1" Cabinet="VrxCommon.cab" EmbedCab="yes"/>')
        self.add(2, '<Directory Id="TARGETDIR" Name="SourceDir">')
        self.add(3, f'<Directory Id="{programs}">')
        self.add(4, '<Directory Id="INSTALLDIR" Name="VrxCommon">')
        self.folder(5, self.content)
        for library in LIBRARIES:
            self.shared_rows(5, library)
        self.add(4, "</Directory>")
        self.add(3, "</Directory>")
        self.add(2, "</Directory>")
        self.feature("Component", "VrxCommon", "The component and its help file", required=True)
        self.feature("Documentation", "Documentation and samples", "Pages, samples, C++ headers", required=False)
        self.add(1, "</Product>")
        self.add(0, "</Wix>")
        return "\n".join(self.lines) + "\n"


def read_rows(path):
    return [line.split("\t") for line in path.read_text(encoding="utf-8").splitlines()]


def is_shared(row):
    """Windows shows 32-bit and 64-bit programs the same program ids and type libraries, but not where a library's
    own file stands, and classes and interfaces of their own."""
    key = row[0]
    return not (key.startswith(("CLSID\\", "Interface\\")) or key.endswith(("\\win32", "\\win64")))


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    print(Installer(*sys.argv[1:]).text(), end="")
