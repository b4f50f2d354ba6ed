"""Makes the page one file: style, code and module stand in it, and its policy lets the browser load nothing else.

    assemble.py FOLDER MODULE VERSION PAGE

FOLDER holds index.html, style.css and the page's own JavaScript modules. They are put one behind another, each once and
behind those that it imports: a module's names are the page's, so that no two may have the same.
"""

import base64
import gzip
import hashlib
import pathlib
import re
import sys

IMPORT = re.compile(r"^import \{[^}]*\} from '\./([a-z]+\.js)';\n", re.M)
EXPORT = re.compile(r"^export ", re.M)
NAME = re.compile(r"^(?:async )?(?:const|let|class|function) (\w+)", re.M)


def joined(folder, first):
    """The code of a module and of all that it imports."""
    done, names, code = set(), {}, []

    def add(file):
        if file in done:
            return
        done.add(file)
        text = (folder / file).read_text(encoding="utf-8")
        for imported in IMPORT.findall(text):
            add(imported)
        text = EXPORT.sub("", IMPORT.sub("", text))
        if re.search(r"^import\b|</script|<!--", text, re.M):
            sys.exit(f"{file}: an import, or text, that cannot stand in the page")
        for name in NAME.findall(text):
            if names.setdefault(name, file) != file:
                sys.exit(f"{file} and {names[name]} both have a {name}")
        code.append(text)

    add(first)
    return "\n".join(code)


def hash_of(text):
    return "'sha256-" + base64.b64encode(hashlib.sha256(text.encode()).digest()).decode() + "'"


def main(folder, module, version, page):
    folder = pathlib.Path(folder)
    style = (folder / "style.css").read_text(encoding="utf-8")
    code = joined(folder, "page.js")
    packed = gzip.compress(pathlib.Path(module).read_bytes(), 9, mtime=0)
    policy = "; ".join([
        "default-src 'none'",
        f"script-src {hash_of(code)} 'wasm-unsafe-eval'",
        "worker-src blob:",
        f"style-src {hash_of(style)}",
        "img-src blob: data:",
        "connect-src 'none'",
        "base-uri 'none'",
        "form-action 'none'",
    ])
    parts = {
        "policy": policy,
        "style": style,
        "version": version,
        "worker": joined(folder, "worker.js"),
        "module": base64.b64encode(packed).decode(),
        "page": code,
    }
    text = (folder / "index.html").read_text(encoding="utf-8")
    text = re.sub(r"\{(\w+)\}", lambda match: parts[match[1]], text)
    page = pathlib.Path(page)
    page.parent.mkdir(parents=True, exist_ok=True)
    page.write_text(text, encoding="utf-8", newline="\n")
    print(f"{page}: {len(text)} bytes, of the module {len(packed)} compressed")


if __name__ == "__main__":
    main(*sys.argv[1:])
