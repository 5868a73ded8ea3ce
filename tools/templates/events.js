"use strict";
const form = document.querySelector("form");
const [search, found, link, day] = ["search", "found", "link", "date"].map(id => document.getElementById(id));
const all = (selector, within = document) => [...within.querySelectorAll(selector)];

// Words for the same thing, as plain() writes them: a search for one of a line finds them all.
const SYNONYMS = [
    ["file name", "filename", "name of a file", "name of the file"],
    ["user name", "username", "login", "logon", "log in", "logged in", "account", "user id"],
    ["licence", "license", "licens"],
    ["key press", "keypress", "key stroke", "keystroke", "keyboard", "key up", "press of a key", "release of a key",
        "key pressed", "pressed key", "was typed", "typing"],
    ["path", "folder", "directory"],
    ["machine", "computer", "hardware", "processor", "pc"],
    ["e mail", "email"],
    ["ip address", "ip"],
    ["opt out", "optout", "opted out", "opting out", "opt in", "opting in", "opted in", "refuse", "consent"],
    ["personal data", "personal information", "personal text", "personal", "may hold a person text", "highly sensitive"],
    ["mould", "mold"],
    ["behaviour", "behavior"],
    ["encryption", "encrypted"],
    ["timestamp", "time stamp", "time"],
    ["delete", "deletion", "erase", "erasure", "kept", "retention"],
];

// Words that are searched for only where no other one is given.
const FILLING = new Set(("a about an and any are be can contain contains did do does events event for has have hold i in is it " +
    "its me may might my of or our send sends sent the their there they to was were what when where which who why will " +
    "with you your").split(" "));

// In lower case, with a blank wherever a name is divided: "FILE.NAME", "file's name" and "fileName" become "file name".
const plain = text => text.replace(/([a-z])([A-Z])/g, "$1 $2").toLowerCase().replace(/['’]s(?![a-z])/g, "")
    .replace(/[^\p{L}\p{N}]+/gu, " ").trim();

// The text that is searched, and after it its names undivided: "trackmeshsize" finds TrackMeshSize.
function textOf(parts) {
    const text = parts.map(part => part.textContent).join(" ");
    const names = text.split(/\s+/).map(plain).filter(name => name.includes(" "));
    return ` ${plain(text)} ${names.map(name => name.replaceAll(" ", "")).join(" ")}`;
}

// The words that are searched for, in the singular, each with its synonyms. Words between quotation marks and those of a
// name such as COMMON.FILE.NAME or TrackMeshSize stay together.
function wordsOf(text) {
    const words = [];
    const others = text.replace(/["“”]([^"“”]+)["“”]|\w+([._]\w+)+|\w*[a-z][A-Z]\w*/g,
        (name, quoted) => (words.push([plain(quoted ?? name)]), " "));
    const named = plain(others).split(" ");
    const asked = named.filter(word => !FILLING.has(word));
    const singular = (asked.length + words.length > 0 || named.length > 1 ? asked : named).map(
        word => word.replace(/(?<=ss|sh|ch|x)es$|(?<=..[^su])s$/, ""));
    let rest = ` ${singular.join(" ")} `;
    for (const synonyms of SYNONYMS) {
        const own = synonyms.find(word => rest.includes(` ${word} `));
        if (own !== undefined) {
            rest = rest.replaceAll(` ${own} `, " ");
            words.push([own, ...synonyms]);
        }
    }
    return words.concat(rest.split(" ").filter(word => word !== "").map(word => [word]));
}

// A word of up to three letters begins a word of the text, a longer one can be anywhere.
const hasOne = (text, word) => text.includes(word.length > 3 ? word : " " + word);
const has = (text, synonyms) => synonyms.some(word => hasOne(text, word));

// How well an entry answers, 0 if it lacks a word. `places` are its texts with their weights; each word counts where it
// weighs most, and more in the reader's own word than in a synonym.
function scoreOf(places, words) {
    const scores = words.map(word => Math.max(...places.map(([text, weight]) =>
        has(text, word) ? weight + (hasOne(text, word[0]) ? 0.5 : 0) : 0)));
    return scores.every(score => score > 0) ? scores.reduce((sum, score) => sum + score, 1) : 0;
}

// The values that a key can be filtered by, for each of its meanings.
const meaningsOf = element => (element.dataset.fits ?? "").split(";").map(meaning => meaning.split("|"));
const kindsOf = element => " " + meaningsOf(element).map(([kind]) => kind).join(" ");

const events = all("article").map(element => {
    const heading = all(":scope > h2, :scope > .note", element.closest("section"));
    const name = textOf(all("h3, span.note", element));
    const said = textOf([...heading, ...all("h3, .note", element)]);
    const rows = all(".row", element).map(row => (
        { element: row, name: textOf(all("a", row)), text: textOf(all("th, td:not(.example), a", row)) + kindsOf(row) }));
    return { element, rows, places: [[name, 5], [said, 3], [textOf(all(".signature", element)), 1]] };
});
const lines = all(".line").map(element => {
    const heading = all(":scope > h2, :scope > p:not(.line)", element.closest("section"));
    const copy = element.cloneNode(true);
    all(".example, .events a", copy).forEach(part => part.remove());
    const name = textOf(all(":scope > h3, :scope > a, th > a", element));
    return { element, places: [[name, 4], [textOf([...heading, copy]) + kindsOf(element), 2]] };
});
const entries = [...events, ...lines];
const holders = all("main section, #events, #ask div");
const ordered = [...holders, ...all("article, .row, .line")];
const keyCount = all("#keys .line").length;

const filters = () => all("select", form).map(select => select.value);

// A key fits by one of its meanings; an element that is no key fits while no filter is set.
function fits(element) {
    const wanted = filters();
    return meaningsOf(element).some(meaning => wanted.every((value, i) => value === "" || value === meaning[i]));
}

// The search as a link's end; empty when all is shown.
function asHash() {
    const fields = [...new FormData(form)].map(([name, value]) => [name, value.trim()]);
    const state = fields.filter(([, value]) => value !== "");
    return state.length > 0 ? "#" + new URLSearchParams(state) : "";
}

function take(hash) {
    const state = new URLSearchParams(hash.slice(1));
    for (const field of all("input, select", form))
        field.value = state.get(field.name) ?? "";
}

const linkTo = (href, textContent) => Object.assign(document.createElement("a"), { href, textContent });

// A row's score is how many of the words it has. The rows with the most are marked.
function showEvent(event, words, isFiltered, scores) {
    for (const { element, text } of event.rows)
        scores.set(element, words.filter(word => has(text, word)).length);
    const most = Math.max(1, ...event.fitting.map(row => scores.get(row.element)));
    for (const row of event.rows) {
        row.element.hidden = !event.fitting.includes(row);
        row.element.classList.toggle("hit", !row.element.hidden && scores.get(row.element) === most);
    }
    for (const list of all("table, .opening", event.element))
        list.hidden = all(".row", list).every(row => row.hidden);
    const left = event.rows.length - event.fitting.length;
    const note = event.element.querySelector(".rest");
    note.hidden = !isFiltered || left === 0;
    note.textContent = `${left} other ${left === 1 ? "key" : "keys"} not shown`;
}

function report(isNothing) {
    const [count, keys] = ["article", "#keys .line"].map(selector => all(selector).filter(entry => !entry.hidden).length);
    const others = all("main > section:not(#keys)").filter(section => !section.hidden);
    const hash = asHash();
    link.hidden = hash === "";
    link.href = hash || "#";
    found.classList.toggle("nothing", isNothing);
    found.replaceChildren(hash === "" ? `${count} events, ${keyCount} keys`
        : isNothing ? "Nothing found. What is not known here"
        : `${count} of ${events.length} events, ${keys} of ${keyCount} keys`);
    if (hash !== "")
        others.forEach((section, i) => found.append(
            i > 0 ? ", " : isNothing ? ": " : "; also: ", linkTo("#" + section.id, section.querySelector("h2").textContent)));
}

function show() {
    const words = wordsOf(search.value);
    const isFiltered = filters().some(value => value !== "");
    const scores = new Map();
    for (const event of events) {
        event.fitting = event.rows.filter(row => fits(row.element));
        const places = event.fitting.flatMap(row => [[row.name, 4], [row.text, 2]]);
        const isAsked = !isFiltered || event.fitting.length > 0;
        scores.set(event.element, isAsked ? scoreOf([...event.places, ...places], words) : 0);
        showEvent(event, words, isFiltered, scores);
    }
    for (const { element, places } of lines)
        scores.set(element, fits(element) ? scoreOf(places, words) : 0);
    const isNothing = entries.every(({ element }) => scores.get(element) === 0);
    for (const { element } of entries)
        element.hidden = scores.get(element) === 0 && !(isNothing && element.closest("#ask"));
    for (const holder of holders) {
        scores.set(holder, Math.max(...all("article, .line", holder).map(entry => scores.get(entry))));
        holder.hidden = scores.get(holder) === 0 && !(isNothing && holder.closest("#ask"));
    }
    // The best first; where nothing is searched for, all scores are the same, and the order is the page's own.
    for (const element of [...ordered].sort((a, b) => scores.get(b) - scores.get(a)))
        element.parentElement.append(element);
    for (const item of all("nav [data-of]"))
        item.hidden = document.getElementById(item.dataset.of).hidden;
    report(isNothing);
}

// After a change by the reader: the address is that of the search, and the page is shown from its top.
function change() {
    show();
    history.replaceState(null, "", asHash() || location.pathname + location.search);
    scrollTo(0, 0);
}

// A link to an element that the search has hidden ends the search; so does an address without an end.
addEventListener("hashchange", () => {
    const target = document.querySelector(":target");
    if (target === null) {
        take(location.hash);
        show();
        scrollTo(0, 0);
        search.focus();
    } else if (target.closest("[hidden]")) {
        take("");
        show();
        target.scrollIntoView();
        target.focus();
    }
});
form.addEventListener("input", change);
form.addEventListener("submit", submit => submit.preventDefault());
document.getElementById("all").addEventListener("click", () => {
    take("");
    change();
    search.focus();
});

// Payloads are open on paper, and where no script runs.
let closed = all("details");
const setOpen = isOpen => closed.forEach(payload => { payload.open = isOpen; });
addEventListener("beforeprint", () => {
    closed = all("details:not([open])");
    setOpen(true);
});
addEventListener("afterprint", () => setOpen(false));

// The events that are not wanted any more on the day that the reader gives.
function showUnwanted() {
    const unwanted = all("article").filter(({ dataset }) => dataset.until !== "" && dataset.until < day.value);
    const output = document.querySelector("#unwanted output");
    output.replaceChildren(unwanted.length === 0 ? "none" : "");
    unwanted.forEach(({ id, dataset }, i) => output.append(i > 0 ? ", " : "", linkTo("#" + id, id), ` (${dataset.until})`));
}
day.valueAsNumber = Date.now() - new Date().getTimezoneOffset() * 60000; // today, where the reader is
day.addEventListener("input", showUnwanted);

// The page's own copies of the files, so that it can be passed on alone.
const copyOf = id => JSON.parse(document.getElementById(id).textContent);
function offer(id, text, type) {
    document.getElementById(id).href = URL.createObjectURL(new Blob([text], { type }));
}
offer("as-json", JSON.stringify(copyOf("document"), null, 4) + "\n", "application/json");
offer("as-table", copyOf("table"), "text/csv");

form.hidden = false;
setOpen(false);
showUnwanted();
take(location.hash);
show();
