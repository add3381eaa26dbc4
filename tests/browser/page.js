// What the test asks of a page. An expression: the object whose functions are called.
({
  // How many elements carry each value of a data attribute.
  counts(attribute) {
    const counts = {};
    for (const element of document.querySelectorAll(`[data-${attribute}]`)) {
      const value = element.getAttribute(`data-${attribute}`);
      counts[value] = (counts[value] || 0) + 1;
    }
    return counts;
  },

  // The numbers of the summary.
  tiles() {
    return Object.fromEntries([...document.querySelectorAll('[data-count]')].map(
        (tile) => [tile.dataset.count, [Number(tile.dataset.value), Number(tile.querySelector('strong').innerText)]]));
  },

  unfold() {
    for (const details of document.querySelectorAll('details')) details.open = true;
  },

  // By how many pixels the page is wider than its window.
  overflow() {
    return Math.max(document.documentElement.scrollWidth, document.body.scrollWidth) - innerWidth;
  },

  // Links that lead nowhere, ids that are there twice, and controls without a name.
  broken() {
    const ids = [...document.querySelectorAll('[id]')].map((element) => element.id);
    const known = new Set(ids);
    const broken = ids.filter((id, index) => ids.length !== known.size && ids.indexOf(id) !== index);
    for (const link of document.querySelectorAll('a')) {
      const target = link.getAttribute('href');
      if (!target.startsWith('#') || !known.has(target.slice(1))) broken.push(`link to ${target}`);
      if (!(link.getAttribute('aria-label') || link.textContent).trim()) broken.push(`link to ${target} without a name`);
    }
    return broken;
  },

  // Markup that no page of ours has: it could only come from the card.
  foreign() {
    return [...document.querySelectorAll('script,img,iframe,object,embed,link,form,input,svg,base,[onerror],[onload]')]
        .map((element) => element.outerHTML.slice(0, 80));
  },

  // Texts with less than 4.5 to 1 between their colour and what they stand on.
  faint() {
    const numbers = (colour) => colour.match(/[\d.]+/g).map(Number);
    const isOpaque = (colour) => { const [, , , alpha = 1] = numbers(colour); return alpha === 1; };
    const luminance = (colour) => {
      const [r, g, b] = numbers(colour).slice(0, 3).map((part) => {
        const share = part / 255;
        return share <= 0.04045 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
      });
      return 0.2126 * r + 0.7152 * g + 0.0722 * b;
    };
    const ground = (element) => {
      for (let at = element; at; at = at.parentElement) {
        const colour = getComputedStyle(at).backgroundColor;
        if (isOpaque(colour)) return colour;
      }
      return 'rgb(255, 255, 255)';
    };
    const faint = new Set();
    const texts = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    for (let text = texts.nextNode(); text; text = texts.nextNode()) {
      const element = text.parentElement;
      if (!text.data.trim() || !element.getClientRects().length) continue;
      const colour = getComputedStyle(element).color, back = ground(element);
      const [light, dark] = [luminance(colour), luminance(back)].sort((a, b) => b - a);
      const ratio = (light + 0.05) / (dark + 0.05);
      if (ratio < 4.5) faint.add(`${element.tagName}.${element.className} ${colour} on ${back}: ${ratio.toFixed(2)}`);
    }
    return [...faint];
  },

  // The shares of every bar, against the widths at which they are drawn: the largest difference in pixels.
  distortion() {
    let worst = 0;
    for (const bar of document.querySelectorAll('#files .cells')) {
      const cells = [...bar.children];
      if (!bar.clientWidth || cells.some((cell) => cell.matches('.undecodable,.stale,.erased'))) continue;
      const all = cells.reduce((sum, cell) => sum + Number(cell.style.flexGrow), 0);
      for (const cell of cells) {
        const wanted = bar.clientWidth * Number(cell.style.flexGrow) / all;
        worst = Math.max(worst, Math.abs(cell.getBoundingClientRect().width - wanted));
      }
    }
    return worst;
  },
})
