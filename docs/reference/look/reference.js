// What the pages do by themselves: light and dark, pictures that follow, the list of pages, and the search.
"use strict";

const script = document.currentScript;
const root = script.dataset.root;
const page = document.documentElement;
page.classList.add("js");

// The pages create this; the search below reads the same index without it.
function SearchBox() {}

const theme = {
    desktop: matchMedia("(prefers-color-scheme: dark)"),
    chosen() { return localStorage.getItem("theme"); },
    isDark() { return this.chosen() ? this.chosen() === "dark" : this.desktop.matches; },
    toggle() {
        const other = this.isDark() ? "light" : "dark";
        // Whoever chooses what the desktop has goes on following it.
        if ((other === "dark") === this.desktop.matches)
            localStorage.removeItem("theme");
        else
            localStorage.setItem("theme", other);
        this.show();
    },
    show() {
        if (this.chosen())
            page.dataset.theme = this.chosen();
        else
            delete page.dataset.theme;
        const button = document.getElementById("theme");
        if (button)
            button.textContent = this.isDark() ? "☀" : "☾";
        for (const picture of document.querySelectorAll(".image img"))
            picture.src = picture.src.replace(/(-dark)?\.png$/, this.isDark() ? "-dark.png" : ".png");
    },
};

// The index lies in scripts beside the pages, since pages on a disk may load nothing else.
const index = {
    entries: null,
    load() {
        if (!this.entries)
            this.entries = this.loadAll();
        return this.entries;
    },
    async loadAll() {
        await this.run("searchdata.js");
        const entries = [];
        for (let part = 0; part < indexSectionsWithContent[0].length; ++part) {
            await this.run(`all_${part.toString(16)}.js`);
            for (const [, [name, ...places]] of searchData)
                for (const [address, , scope] of places)
                    entries.push({ name: this.plain(name), scope: this.plain(scope), address: root + address.slice(3) });
        }
        return entries;
    },
    run(name) {
        return new Promise((done, failed) => {
            const part = document.createElement("script");
            part.src = `${root}search/${name}`;
            part.onload = done;
            part.onerror = failed;
            document.head.append(part);
        });
    },
    plain(text) { return new DOMParser().parseFromString(text, "text/html").body.textContent; },
    // What begins with the text comes first, then what has it further on; shorter names first.
    find(entries, text) {
        const wanted = text.toLowerCase();
        const rank = entry => {
            const whole = (entry.scope ? `${entry.scope}::` : "") + entry.name;
            const place = entry.name.toLowerCase().indexOf(wanted);
            return place >= 0 ? place : whole.toLowerCase().includes(wanted) ? 1000 : -1;
        };
        return entries.map(entry => [rank(entry), entry]).filter(([place]) => place >= 0)
            .sort(([a, one], [b, other]) => Math.min(a, 1) - Math.min(b, 1) || a - b || one.name.length - other.name.length)
            .slice(0, 40).map(([, entry]) => entry);
    },
};

function row(entry) {
    const item = document.createElement("li");
    const link = document.createElement("a");
    const scope = document.createElement("span");
    link.href = entry.address;
    link.textContent = entry.name;
    scope.textContent = entry.scope;
    link.append(scope);
    item.append(link);
    return item;
}

function nothing() {
    const item = document.createElement("li");
    item.className = "none";
    item.textContent = "Nothing has this name.";
    return item;
}

async function search(field, list) {
    const text = field.value.trim();
    list.hidden = !text;
    if (!text)
        return;
    const found = index.find(await index.load(), text);
    if (field.value.trim() === text)
        list.replaceChildren(...(found.length ? found.map(row) : [nothing()]));
}

// Down and Up go through what was found, Escape leaves, Return opens the first.
function moveInSearch(event, field, list) {
    const stops = [field, ...list.querySelectorAll("a")];
    const here = stops.indexOf(document.activeElement);
    const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
    if (step) {
        stops[Math.max(0, Math.min(stops.length - 1, here + step))].focus();
    } else if (event.key === "Escape") {
        list.hidden = true;
        field.focus();
    } else if (event.key === "Enter" && here === 0 && stops.length > 1) {
        stops[1].click();
    } else {
        return;
    }
    event.preventDefault();
}

function wireSearch() {
    const field = document.getElementById("search");
    const list = document.getElementById("found");
    field.addEventListener("input", () => search(field, list));
    field.addEventListener("focus", () => search(field, list));
    field.parentElement.addEventListener("keydown", event => moveInSearch(event, field, list));
    document.addEventListener("click", event => { list.hidden ||= !field.parentElement.contains(event.target); });
    document.addEventListener("keydown", event => {
        if (event.key === "/" && document.activeElement !== field) {
            event.preventDefault();
            field.focus();
        }
    });
}

function wirePages() {
    const button = document.getElementById("menu");
    button.addEventListener("click", () => {
        button.setAttribute("aria-expanded", page.classList.toggle("pages-open"));
    });
    const here = location.pathname.split("/").pop() || "index.html";
    document.querySelector(`.pages a[href="${root}${here}"]`)?.classList.add("here");
}

theme.show();
theme.desktop.addEventListener("change", () => theme.show());
document.addEventListener("DOMContentLoaded", () => {
    theme.show();
    document.getElementById("theme").addEventListener("click", () => theme.toggle());
    wirePages();
    wireSearch();
});
