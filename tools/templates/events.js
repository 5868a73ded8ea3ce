
"use strict";
const form = document.querySelector("form");
const [search, found, link] = ["search", "found", "link"].map(id => document.getElementById(id));
const all = (selector, within = document) => [...within.querySelectorAll(selector)];

// Whether events are shown that have the words in different places, although others have them all in one place.
let apart = false;

// In lower case, and once more without a name's dots and underscores: "filename" finds FILE.NAME.
function textOf(parts) {
    const text = parts.map(part => part.textContent).join(" ").toLowerCase().replaceAll("’", "'");
    return text + " " + text.replace(/[._]/g, "");
}

// The words of a question that are not searched for.
const FILLING = new Set(("a an any are be can contain contains did do does event events has have hold is it its key " +
    "keys may might of or send sends sent the there they to was were what when where which who why will you").split(" "));
const OPENING = /^(are|can|did|do|does|has|have|is|may|was|were|what|when|where|which|who|why|will)\s/;

// Words between quotation marks stay together. The question "is a file's name sent?" searches for "file" and "name".
function wordsOf(text) {
    const plain = text.trim().toLowerCase().replaceAll("’", "'").replace(/[“”]/g, '"');
    const words = plain.match(/"[^"]+"|[^\s"?!,;]+/g) ?? [];
    const named = words.map(word => word.startsWith('"') ? word.slice(1, -1).trim() : word.replace(/('s|\.)$/, ""));
    const isQuestion = plain.includes("?") || OPENING.test(plain);
    const asked = named.filter(word => !FILLING.has(word));
    return isQuestion && asked.length > 0 ? asked : named;
}

// The values that a key can be filtered by, for each of its meanings.
const meaningsOf = element => (element.dataset.fits ?? "").split(";").map(meaning => meaning.split("|"));
const kindsOf = element => " " + meaningsOf(element).map(([kind]) => kind).join(" ");

const textOfRow = row => textOf(all("th, td:not(.example), a", row)) + kindsOf(row);
const events = all("article").map(element => {
    const section = element.closest("section");
    return {
        element,
        said: textOf(all(":scope > h2, :scope > .note", section).concat(all("h3, .note", element))),
        parameters: element.dataset.parameters.toLowerCase(),
        rows: all(".row", element).map(row => ({ element: row, text: textOfRow(row) })),
    };
});
const lines = all(".line").map(element => {
    const section = element.closest("section");
    const copy = element.cloneNode(true);
    all(".example, .events a", copy).forEach(part => part.remove());
    return { element, text: textOf([...all(":scope > h2, :scope > p:not(.line)", section), copy]) + kindsOf(element) };
});
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
    if (apart && state.length > 0)
        state.push(["apart", "yes"]);
    return state.length > 0 ? "#" + new URLSearchParams(state) : "";
}

function take(hash) {
    const state = new URLSearchParams(hash.slice(1));
    for (const field of all("input, select", form))
        field.value = state.get(field.name) ?? "";
    apart = state.has("apart");
}

const linkTo = (href, textContent) => Object.assign(document.createElement("a"), { href, textContent });

function showEvent(event, { words, has, isFiltered }) {
    // Marked are the rows because of which the event was found: those that have all words; else those that have one which
    // the event's own texts lack; else those that have any.
    const unsaid = words.filter(word => !event.said.includes(word));
    const rest = unsaid.length > 0 ? unsaid : words;
    const isHit = event.fitting.some(row => has(row.text))
        ? row => has(row.text)
        : row => rest.some(word => row.text.includes(word));
    for (const row of event.rows) {
        row.element.hidden = !event.fitting.includes(row);
        row.element.classList.toggle("hit", words.length > 0 && !row.element.hidden && isHit(row));
    }
    for (const list of all("table, .opening", event.element))
        list.hidden = all(".row", list).every(row => row.hidden);
    const left = event.rows.length - event.fitting.length;
    const note = event.element.querySelector(".rest");
    note.hidden = !isFiltered || left === 0;
    note.textContent = `${left} other ${left === 1 ? "key" : "keys"} not shown`;
}

function report(shown, more) {
    const count = shown.length;
    const keys = all("#keys .line").filter(line => !line.hidden).length;
    const others = ["about", "changes", "common", "unsent"].map(id => document.getElementById(id))
        .filter(section => !section.hidden);
    const hash = asHash();
    link.hidden = hash === "";
    link.href = hash || "#";
    const isNothing = count === 0 && keys === 0 && others.length === 0;
    found.classList.toggle("nothing", isNothing);
    found.replaceChildren(hash === "" ? `${count} events, ${keyCount} keys`
        : isNothing ? "Nothing found"
        : `${count} of ${events.length} events, ${keys} of ${keyCount} keys`);
    if (hash === "" || isNothing)
        return;
    others.forEach((section, i) => found.append(
        i === 0 ? "; also: " : ", ", linkTo("#" + section.id, section.querySelector("h2").textContent)));
    if (more > 0)
        found.append("; ", linkTo(hash + "&apart=yes", `${more} more with the words apart`));
}

function show() {
    const words = wordsOf(search.value);
    const has = text => words.every(word => text.includes(word));
    const isFiltered = filters().some(value => value !== "");
    for (const event of events) {
        event.fitting = event.rows.filter(row => fits(row.element));
        const texts = [event.said, ...event.fitting.map(row => row.text)];
        const isAsked = !isFiltered || event.fitting.length > 0;
        event.isTogether = isAsked && texts.some(has);
        event.isApart = isAsked && has([...texts, event.parameters].join(" "));
    }
    const together = events.filter(event => event.isTogether);
    const anywhere = events.filter(event => event.isApart);
    const shown = apart || together.length === 0 ? anywhere : together;
    for (const event of events) {
        event.element.hidden = !shown.includes(event);
        showEvent(event, { words, has, isFiltered });
    }
    for (const { element, text } of lines)
        element.hidden = !has(text) || !fits(element);
    document.getElementById("counts").hidden = words.length > 0 || isFiltered;
    for (const section of all("section"))
        section.hidden = all("article, .line", section).every(entry => entry.hidden);
    for (const item of all("nav [data-of]"))
        item.hidden = document.getElementById(item.dataset.of).hidden;
    report(shown, anywhere.length - shown.length);
}

// After a change by the reader: the address is that of the search, and the page is shown from its top.
function change() {
    apart = false;
    show();
    history.replaceState(null, "", asHash() || location.pathname + location.search);
    scrollTo(0, 0);
}

function showAll() {
    take("");
    show();
}

// A link to an element that the search has hidden ends the search.
document.addEventListener("click", click => {
    const anchor = click.target.closest('a[href^="#"]');
    const target = anchor && document.getElementById(anchor.hash.slice(1));
    if (target && target.closest("[hidden]"))
        showAll();
});
addEventListener("hashchange", () => {
    if (location.hash.includes("=")) {
        take(location.hash);
        show();
        scrollTo(0, 0);
        search.focus();
    } else if (document.querySelector(":target")?.closest("[hidden]")) {
        showAll();
        document.querySelector(":target").scrollIntoView();
    }
});
form.addEventListener("input", change);
form.addEventListener("submit", submit => submit.preventDefault());
document.getElementById("all").addEventListener("click", () => {
    take("");
    change();
    search.focus();
});

// The page's own copies of the files, so that it can be passed on alone.
const copyOf = id => JSON.parse(document.getElementById(id).textContent);
function offer(id, text, type) {
    document.getElementById(id).href = URL.createObjectURL(new Blob([text], { type }));
}
offer("as-json", JSON.stringify(copyOf("document"), null, 4) + "\n", "application/json");
offer("as-table", copyOf("table"), "text/csv");

form.hidden = false;
take(location.hash.includes("=") ? location.hash : "");
show();
